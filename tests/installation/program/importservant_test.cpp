#include "installation/program/importservant.h"

#include <QSemaphore>

#include <gmock/gmock.h>

using namespace installation;
using KORVE_INSTALLATION::exImport;
using State = KORVE_INSTALLATION::struImportState_var;

namespace
{

/// An import that waits until it is let go or cancelled.
class ImportServantTest : public testing::Test
{
protected:
    ~ImportServantTest() override
    {
        gate.release(100);
        servant->stop();
    }

    QString import(const QString &path, const recorder::ImportControl &control)
    {
        control.progress(1, 2);
        while (!gate.tryAcquire(1, 5))
            if (control.cancellation.stop_requested())
                throw std::runtime_error("cancelled");
        if (path == QLatin1String("/bad"))
            throw std::runtime_error("no such file");
        return QStringLiteral("R1");
    }
    /// The last state.
    State finished(const char *id)
    {
        State state = servant->await(id);
        while (!state->finished)
            state = servant->await(id);
        return state;
    }

    QSemaphore gate;
    PortableServer::Servant_var<ImportServant> servant{new ImportServant(
        [this](const QString &path, const recorder::ImportControl &control) { return import(path, control); })};
};

} // namespace

TEST_F(ImportServantTest, TellsHowFarAnImportIsAndWhatItMade)
{
    const CORBA::String_var id = servant->begin("/good");
    State state = servant->await(id);
    EXPECT_FALSE(state->finished);
    EXPECT_EQ(state->doneBytes, 1u);
    EXPECT_EQ(state->totalBytes, 2u);
    gate.release();
    state = finished(id);
    EXPECT_STREQ(state->recordId, "R1");
    EXPECT_STREQ(state->failure, "");
    EXPECT_THROW(servant->await(id), exImport);
}

TEST_F(ImportServantTest, TellsWhyAnImportFailed)
{
    const CORBA::String_var id = servant->begin("/bad");
    gate.release();
    EXPECT_STREQ(finished(id)->failure, "no such file");
}

TEST_F(ImportServantTest, Cancels)
{
    const CORBA::String_var id = servant->begin("/good");
    servant->cancel(id);
    EXPECT_STREQ(finished(id)->failure, "cancelled");
}

TEST_F(ImportServantTest, RefusesWhatItCannotTake)
{
    EXPECT_THROW(servant->begin("relative"), exImport);
    EXPECT_THROW(servant->await("7"), exImport);
    EXPECT_THROW(servant->cancel("7"), exImport);
}

TEST_F(ImportServantTest, DoesNotDoTooMuchAtATime)
{
    for (std::size_t count = 0; count < ImportServant::mostAtATime; ++count)
        CORBA::string_free(servant->begin("/good"));
    EXPECT_THROW(servant->begin("/good"), exImport);
}

TEST_F(ImportServantTest, EndsItsImportsWhenItStops)
{
    CORBA::string_free(servant->begin("/good"));
    servant->stop();
    EXPECT_THROW(servant->begin("/good"), exImport);
}
