#include "coresupport/errorhandler.h"
#include "fuzz/orbconnection/batches.h"

/// Applies what a client pushes; whatever became of the tree can be taken over by another client.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    ErrorHandler::Instance().setTraceMask(0);
    values::Tree tree;
    fill(tree);
    mirror::MirrorSession session(tree, QStringLiteral("/K/Device"), {}, outlet());
    for (const std::string_view batch : batchesIn(data, size)) {
        if (!session.receive(batch))
            break;
        session.flush();
    }
    values::Tree other;
    mirror::MirrorClient client(other, QStringLiteral("/C/Device"), QString(), {}, outlet());
    takeOver(tree, other, client);
    return 0;
}
