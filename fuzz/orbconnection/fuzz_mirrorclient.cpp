#include "coresupport/errorhandler.h"
#include "fuzz/orbconnection/batches.h"

namespace
{
constexpr char statePath[] = "/C/Device/State";

/// A change of the client's own, which the server has not heard of.
void change(values::Tree &tree, int number)
{
    if (values::ValueBase *const state = tree.findValue(QLatin1String(statePath)))
        state->SetStringValue(QString::number(number), nullptr);
}
} // namespace

/// Applies what a server delivers, amid changes of this side; afterwards an honest server is mirrored as ever.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    ErrorHandler::Instance().setTraceMask(0);
    values::Tree tree;
    mirror::MirrorClient client(tree, QStringLiteral("/C/Device"), QStringLiteral("Own"), {}, outlet());
    client.begin();
    int number = 0;
    for (const std::string_view batch : batchesIn(data, size)) {
        if (client.receive(batch) == mirror::MirrorClient::Outcome::Malformed)
            break;
        change(tree, ++number);
        client.flush();
    }
    client.lose();
    values::Tree server;
    fill(server);
    takeOver(server, tree, client);
    return 0;
}
