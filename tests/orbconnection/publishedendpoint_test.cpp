#include "orbconnection/publishedendpoint.h"

#include "orbconnection/orbhandler.h"

#include <gmock/gmock.h>

using CorbaCommon::Endpoint;
using CorbaCommon::OrbHandler;
using CorbaCommon::publishedEndpoint;

TEST(PublishedEndpoint, IsThatOfTheReference)
{
    const CORBA::Object_var object =
        OrbHandler::Instance().orb()->string_to_object("corbaloc::1.2@127.9.8.7:1234/Key");
    const Endpoint endpoint = publishedEndpoint(object);
    EXPECT_EQ(endpoint.host, QLatin1String("127.9.8.7"));
    EXPECT_EQ(endpoint.port, 1234);
}

TEST(PublishedEndpoint, OfAnObjectOfThisProcessIsWhatItPublishes)
{
    OrbHandler &orb = OrbHandler::Instance();
    const CORBA::Object_var object = orb.rootPoa()->create_reference("IDL:omg.org/CORBA/Object:1.0");
    const Endpoint endpoint = publishedEndpoint(object);
    EXPECT_EQ(endpoint.host, orb.settings().published());
    EXPECT_NE(endpoint.port, 0);
}
