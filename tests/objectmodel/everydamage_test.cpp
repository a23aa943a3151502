#include "tests/support/objectmodel/everyclass.h"
#include "tests/support/objectmodel/failure.h"
#include "tests/support/objectmodel/forms.h"

#include <QtEndian>

using modeltest::failureOf;
using modeltest::hex;
using modeltest::taggedPayload;

/// Reads damaged forms of a filled object. What comes of it may be a failure or an object with other content, but never
/// a crash, a hang or an object that cannot be used.
class EveryDamage : public modeltest::EveryClass
{
protected:
    // Reads into a fresh object with and without validation, and uses what came of it.
    template <class Read> std::string failureOfReading(Read &&read) const
    {
        std::string failure;
        for (const bool validate : {false, true}) {
            const auto object = type.make();
            object->SetValidate(validate);
            failure = failureOf([&] { read(*object); });
            object->SetValidate(false);
            EXPECT_FALSE(modeltest::xmlOf(*object).empty());
            EXPECT_FALSE(compact(*object).isEmpty());
        }
        return failure;
    }

    // Where the last frame of the payload begins: a form cut before it lacks a whole element.
    static int lastFrame(const QByteArray &payload)
    {
        int frame = 0;
        for (int next = 0; next < payload.size();) {
            frame = next;
            next += 8 + qFromBigEndian<qint32>(payload.constData() + next + 4);
        }
        return frame;
    }
};

INSTANTIATE_TEST_SUITE_P(Of, EveryDamage, testing::ValuesIn(modeltest::schema()), modeltest::className);

TEST_P(EveryDamage, OfTheTaggedFormCutAnywhereIsSurvived)
{
    const QByteArray payload = taggedPayload(*type.filled());
    const int last = lastFrame(payload);
    for (int size = 0; size < payload.size(); ++size) {
        const std::string failure = failureOfReading(
            [&](Object &object) { modeltest::readTagged(object, payload.left(size), payload.size()); });
        if (size <= last) {
            EXPECT_NE(failure, "") << "cut at " << size;
        }
    }
}

TEST_P(EveryDamage, OfTheCompactFormCutAnywhereIsSurvived)
{
    const QByteArray form = compact(*type.filled());
    for (int size = 0; size < form.size(); ++size)
        failureOfReading([&](Object &object) { readCompact(object, form.left(size)); });
}

TEST_P(EveryDamage, OfTheXmlFormCutAnywhereIsRefused)
{
    const QString document = type.filled()->GetXmlString();
    const int end = document.lastIndexOf('>');
    for (int size = 0; size <= end; ++size) {
        bool accepted = false;
        failureOf([&] { accepted = type.make()->SetXmlString(document.left(size), false); });
        EXPECT_FALSE(accepted) << "cut at " << size;
    }
}

TEST_P(EveryDamage, OfTheWholeDocumentCutAnywhereIsRefused)
{
    const QByteArray document = type.filled()->GetBinaryRepresentationAsQByteArray();
    for (int size = 0; size < document.size(); ++size) {
        QDataStream stream(document.left(size));
        bool accepted = false;
        failureOf([&] { accepted = type.make()->SetBinaryRepresentation(stream); });
        EXPECT_FALSE(accepted) << "cut at " << size;
    }
}

TEST_P(EveryDamage, OfOneByteOfTheTaggedFormIsSurvived)
{
    const QByteArray payload = taggedPayload(*type.filled());
    for (const char wrong : {'\0', '\x7f', '\xff'}) {
        for (int place = 0; place < payload.size(); ++place) {
            QByteArray damaged = payload;
            damaged[place] = wrong;
            failureOfReading([&](Object &object) { modeltest::readTagged(object, damaged); });
        }
    }
}

TEST_P(EveryDamage, OfOneByteOfTheCompactFormIsSurvived)
{
    const QByteArray form = compact(*type.filled());
    for (const char wrong : {'\0', '\x7f', '\xff'}) {
        for (int place = 0; place < form.size(); ++place) {
            QByteArray damaged = form;
            damaged[place] = wrong;
            failureOfReading([&](Object &object) { readCompact(object, damaged); });
        }
    }
}

TEST_P(EveryDamage, OfAddedUnknownElementsIsSkipped)
{
    const QByteArray unknown = modeltest::bytes("0badbeef 00000003 aabbcc");
    const QByteArray payload = taggedPayload(*type.filled());
    const auto object = type.make();
    failureOf([&] { modeltest::readTagged(*object, unknown + payload + unknown); });
    const auto plain = type.make();
    failureOf([&] { modeltest::readTagged(*plain, payload); });
    EXPECT_TRUE(type.equal(*object, *plain)) << hex(payload);
}
