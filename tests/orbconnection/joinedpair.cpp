#include "tests/orbconnection/joinedmirror.h"

std::unique_ptr<MirrorPair> MirrorPair::make(values::Tree &serverTree, const QString &serverPath,
                                             const QString &clientPath)
{
    return std::make_unique<JoinedMirror>(serverTree, values::Tree::Instance(), serverPath, clientPath);
}
