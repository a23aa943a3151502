#include "installation/manager/recorderfinder.h"

#include "tests/installation/cco/loopbackports.h"
#include "tests/installation/cco/testorb.h"
#include "tests/installation/manager/managerfixture.h"

using namespace std::chrono_literals;

using RecorderFinder = ManagerFixture;

TEST_F(RecorderFinder, FindsWhatIsRegisteredAsARecorder)
{
    const CORBA::Object_var object = recorder->reference();
    registerRecorder("other one", object);
    cco->Register("KorveRecorder/REC2/Other", object, 0);
    cco->Register("KorveRecorder/deep/er/IF_Control", object, 0);
    cco->RegisterValues("KorveRecorder/VALUES/IF_Control", {}, 0);
    const auto found = installation::RecorderFinder(cco, 1s).find();
    ASSERT_TRUE(found);
    ASSERT_EQ(found->size(), 1u);
    EXPECT_EQ(found->begin()->first, QLatin1String("REC1"));
    EXPECT_TRUE(found->begin()->second->_is_equivalent(object));
}

TEST_F(RecorderFinder, HasNoResultWithoutACentralService)
{
    const MutePort silence;
    const QByteArray reference = "corbaloc::1.2@127.0.0.1:" + QByteArray::number(silence.port()) + "/CCO";
    const CORBA::Object_var object = TestOrb::instance().orb()->string_to_object(reference.constData());
    installation::RecorderFinder finder(CCO::IF_CCO_c_var(CCO::IF_CCO_c::_unchecked_narrow(object)), 100ms);
    EXPECT_FALSE(finder.find());
}
