#include "valuetreelib/vtclientcenter.h"

#include <gtest/gtest.h>

namespace
{
/// Serves one path and keeps the last switch.
class Client : public IVtClient
{
public:
    explicit Client(const char *path) : path(QLatin1String(path)) { VtClientCenter::Instance().addClient(this); }
    ~Client() override { VtClientCenter::Instance().removeClient(this); }
    QString clientPath() const override { return path; }
    void setOptimized(values::ValueBase *, bool on) override { optimized = on; }

    QString path;
    bool optimized = true;
};

IVtClient *clientFor(const char *path)
{
    return VtClientCenter::Instance().GetVtClientForPath(QLatin1String(path));
}

TEST(VtClientCenter, KnowsNoClientAtFirst)
{
    EXPECT_EQ(clientFor("/"), nullptr);
}

TEST(VtClientCenter, FindsTheClientWhosePathEqualsOrEncloses)
{
    const Client client("/SubSystems/a/KORVE");
    EXPECT_EQ(clientFor("/SubSystems/a/KORVE"), &client);
    EXPECT_EQ(clientFor("/SubSystems/a/KORVE/Channel/1/"), &client);
    EXPECT_EQ(clientFor("SubSystems//a/KORVE/Channel"), &client);
    EXPECT_EQ(clientFor("/SubSystems/a"), nullptr) << "above";
    EXPECT_EQ(clientFor("/SubSystems/a/KORVE2"), nullptr) << "beside";
}

TEST(VtClientCenter, PrefersTheClosest)
{
    const Client outer("/a/");
    const Client inner("/a/b");
    const Client root("/");
    EXPECT_EQ(clientFor("/a/b/c"), &inner);
    EXPECT_EQ(clientFor("/a/c"), &outer);
    EXPECT_EQ(clientFor("/x"), &root);
}

TEST(VtClientCenter, ForgetsAClientThatWent)
{
    {
        Client client("/a");
        VtClientCenter::Instance().addClient(&client); // once more
    }
    EXPECT_EQ(clientFor("/a"), nullptr);
}
} // namespace
