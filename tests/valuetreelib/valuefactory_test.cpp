#include "valuetreelib/valuefactory.h"

#include "tests/valuetreelib/treetestsupport.h"
#include "valuetreelib/node.h"
#include "valuetreelib/valuedescriptor.h"
#include "valuetreelib/valuenumeric.h"
#include "valuetreelib/valueselection.h"

#include <gtest/gtest.h>

namespace
{
using namespace values;
using testing::ElementsAre;

struct ClassCase {
    ValueType type;
    const char *typeName;
    bool (*isOfClass)(const ValueBase *);
};

template <typename T> bool isA(const ValueBase *value)
{
    return dynamic_cast<const T *>(value);
}

class Factory : public testing::TestWithParam<ClassCase>
{
};

TEST_P(Factory, MakesTheClassByNumberOrName)
{
    const QString typeName = QLatin1String(GetParam().typeName);
    for (const auto &value : {ValueFactory::Instance().create(GetParam().type), ValueFactory::Instance().create(typeName)}) {
        ASSERT_NE(value, nullptr);
        EXPECT_TRUE(GetParam().isOfClass(value.get()));
        EXPECT_EQ(value->GetType(), GetParam().type);
        EXPECT_EQ(value->GetTypeName(), typeName);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Classes, Factory,
    testing::Values(ClassCase{1, "Text", isA<Value<QString>>}, ClassCase{2, "Bool", isA<Value<bool>>},
                    ClassCase{3, "Int", isA<Value<int>>}, ClassCase{4, "Unsigned", isA<Value<unsigned int>>},
                    ClassCase{5, "Int64", isA<Value<qint64>>}, ClassCase{6, "Double", isA<Value<double>>},
                    ClassCase{10, "NumericInt", isA<ValueNumeric<int>>},
                    ClassCase{11, "NumericInt64", isA<ValueNumeric<qint64>>},
                    ClassCase{12, "NumericDouble", isA<ValueNumeric<double>>},
                    ClassCase{20, "Selection", isA<ValueSelection>}),
    [](const auto &info) { return info.param.typeName; });

struct CustomValue : Value<QString> {
    ValueType GetType() const override { return 123; }
    QString GetTypeName() const override { return QStringLiteral("KorveRecordItemMap"); }
};

TEST(CustomTypes, AreKnownWhileTheyAreRegistered)
{
    ValueFactory &factory = ValueFactory::Instance();
    EXPECT_EQ(factory.create(123), nullptr);
    factory.RegisterType(std::make_unique<DefaultValueCreator<CustomValue>>());
    factory.RegisterType(std::make_unique<DefaultValueCreator<CustomValue>>()); // replaces
    EXPECT_TRUE(isA<CustomValue>(factory.create(123).get()));
    EXPECT_TRUE(isA<CustomValue>(factory.create(QStringLiteral("KorveRecordItemMap")).get()));
    factory.UnregisterType(123);
    factory.UnregisterType(123);
    EXPECT_EQ(factory.create(123), nullptr);
    EXPECT_EQ(factory.create(QStringLiteral("KorveRecordItemMap")), nullptr);
    factory.RegisterType(nullptr);
}

TEST(CustomTypes, AreMadeWithTheirName)
{
    EXPECT_EQ(ValueFactory::Instance().create(ValueTypeBool, QStringLiteral("IsVirtual"))->name(),
              QStringLiteral("IsVirtual"));
    EXPECT_EQ(ValueFactory::Instance().create(-1, QStringLiteral("x")), nullptr);
}

TEST(StandardLists, HaveTheirItems)
{
    EXPECT_EQ(std::size(g_svdCommand), 3u);
    EXPECT_EQ(std::size(g_svdResult), 5u);
    long key = 0;
    for (const SelItemDesc &item : g_svdResult) {
        EXPECT_EQ(item.key(), key++);
        EXPECT_FALSE(item.String().isEmpty());
    }
    EXPECT_EQ(g_svdCommand[2].String(), QStringLiteral("Idle"));
}

TEST(Descriptor, DescribesAValue)
{
    const ValueSelection prototype;
    const ValueDescriptor descriptor(QStringLiteral("ArchiveCommand"), QStringLiteral("/Archive"), &prototype,
                                     g_svdCommand, svdCommandCount, g_svdCommand[2].String(), QStringLiteral("more"));
    EXPECT_EQ(descriptor.name(), QStringLiteral("ArchiveCommand"));
    EXPECT_EQ(descriptor.group(), QStringLiteral("/Archive"));
    EXPECT_EQ(descriptor.prototype(), &prototype);
    EXPECT_EQ(descriptor.selectionItems().size(), 3u);
    EXPECT_EQ(descriptor.defaultText(), QStringLiteral("Idle"));
    EXPECT_EQ(descriptor.furtherText(), QStringLiteral("more"));
}

class DescribedNode : public TreeTest
{
};

TEST_F(DescribedNode, TellsANewDescriptor)
{
    const Value<unsigned int> prototype;
    const ValueDescriptor descriptor(QStringLiteral("x"), QStringLiteral("/Archive"), &prototype, QString(), QString());
    EXPECT_TRUE(descriptor.selectionItems().empty());
    LoggingObserver observer("n", log);
    Node *const node = tree.addNode(QStringLiteral("/Archive"));
    node->AddObserver(&observer);
    EXPECT_EQ(node->valueDescriptor(), nullptr);
    node->SetValueDescriptor(&descriptor, nullptr);
    node->SetValueDescriptor(&descriptor, nullptr);
    EXPECT_EQ(node->valueDescriptor(), &descriptor);
    EXPECT_THAT(taken(), ElementsAre("n 6"));
    node->SetValueDescriptor(nullptr, &observer);
    EXPECT_THAT(taken(), testing::IsEmpty());
}
} // namespace
