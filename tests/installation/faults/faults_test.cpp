#include "installation/faults/processpause.h"
#include "installation/faults/roles.h"

#include <gmock/gmock.h>

#include <sys/wait.h>
#include <unistd.h>

using namespace installation::faults;
using namespace std::chrono_literals;

TEST(RolesTest, GoByTheModuleOfAnInterface)
{
    EXPECT_EQ(roleOfInterface("IDL:TQ_KRV/IF_KORVE_Admin:1.0"), "manager");
    EXPECT_EQ(roleOfInterface("IDL:TQ_KORVE_IT/IF_Korve_IT:1.0"), "manager");
    EXPECT_EQ(roleOfInterface("IDL:TQ_KORVE/IF_Control:1.0"), "recorder");
    EXPECT_EQ(roleOfInterface("IDL:KORVE_INSTALLATION/IF_Import:1.0"), "recorder");
    EXPECT_EQ(roleOfInterface("IDL:CCO/IF_CCO_c:1.0"), "cco");
    EXPECT_EQ(roleOfInterface("IDL:omg.org/CORBA/Object:1.0"), "");
    EXPECT_EQ(roleOfInterface(""), "");
}

TEST(ProcessPause, StopsAndContinuesTheProcess)
{
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        standStill(1s);
        ::_exit(7);
    }
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, WUNTRACED), child);
    EXPECT_TRUE(WIFSTOPPED(status));
    EXPECT_EQ(::waitpid(child, &status, 0), child); // it cannot end before it goes on
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 7);
}
