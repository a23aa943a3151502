#include "installation/manager/publishedendpoint.h"

#include "tests/installation/cco/testorb.h"

#include <gmock/gmock.h>

using installation::Endpoint;
using installation::publishedEndpoint;

TEST(PublishedEndpoint, IsThatOfTheReference)
{
    const CORBA::Object_var object = TestOrb::instance().orb()->string_to_object("corbaloc::1.2@127.9.8.7:1234/Key");
    const Endpoint endpoint = publishedEndpoint(object);
    EXPECT_EQ(endpoint.host, QLatin1String("127.9.8.7"));
    EXPECT_EQ(endpoint.port, 1234);
}

TEST(PublishedEndpoint, OfAnObjectOfThisProcessIsWhereItListens)
{
    const CORBA::Object_var object = TestOrb::instance().rootPoa()->create_reference("IDL:omg.org/CORBA/Object:1.0");
    EXPECT_EQ(publishedEndpoint(object).port, TestOrb::instance().port());
}
