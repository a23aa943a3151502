#include "tests/installation/cco/ccoprocess.h"
#include "tests/installation/cco/loopbackports.h"
#include "tests/installation/manager/managerfixture.h"

#include "coresupport/trace.h"

using namespace std::chrono_literals;

namespace
{

const auto all = [](const std::string &) { return true; };

class RegisteredObjects : public ManagerFixture
{
protected:
    bool isRegistered(const char *name)
    {
        return !CORBA::is_nil(CORBA::Object_var(cco->Resolve(name, CCO::rtInstallation)));
    }

    installation::RegisteredObjects objects{cco, "Folder/", 1s};
};

} // namespace

TEST_F(RegisteredObjects, AreThoseWhoseNamesAreWanted)
{
    const CORBA::Object_var object = recorder->reference();
    cco->Register("Folder/a", object, 0);
    cco->Register("Folder/b", object, 0);
    cco->RegisterValues("Folder/c", {}, 0);
    EXPECT_EQ(objects.find(all)->size(), 2u);
    const auto found = objects.find([](const std::string &name) { return name == "b"; });
    ASSERT_EQ(found->size(), 1u);
    EXPECT_TRUE(found->at("b")->_is_equivalent(object));
}

TEST_F(RegisteredObjects, LoseTheirNameOnlyWhileItIsTheirs)
{
    const CORBA::Object_var object = recorder->reference();
    const CORBA::Object_var other = centralService.reference();
    cco->Register("Folder/a", object, 0);
    objects.unregister("a", other);
    EXPECT_TRUE(isRegistered("Folder/a"));
    objects.unregister("a", object);
    EXPECT_FALSE(isRegistered("Folder/a"));
}

TEST_F(RegisteredObjects, KeepTheirNameWhenAnotherAddressHasRegisteredIt)
{
    const CcoProcess process("South", "ws1");
    const StrangersWay way(process.port());
    const CCO::IF_CCO_c_var names = process.service();
    const CORBA::Object_var object = recorder->reference();
    names->Register("Folder/a", object, 0);
    QString said;
    const TraceCapture former = setTraceCapture([&](const TraceLine &line) { said += line.text; });
    installation::RegisteredObjects strangers(CCO::IF_CCO_c_var(CcoProcess::serviceAt(way.port())), "Folder/", 1s);
    strangers.unregister("a", object);
    setTraceCapture(former);
    EXPECT_EQ(said.toStdString(), ""); // the service has answered
    EXPECT_EQ(strangers.find(all)->size(), 1u);
}
