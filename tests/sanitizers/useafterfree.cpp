#include <QString>

#include <memory>

/// Looks at a text that is gone.
int main(int argc, char **)
{
    auto text = std::make_unique<QString>(argc, u'x');
    const QString *const borrowed = text.get();
    text.reset();
    return borrowed->isEmpty() ? 1 : 0;
}
