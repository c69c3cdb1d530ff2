#include "runtime/json/JsonCodec.h"

#include "runtime/types/List.h"
#include "runtime/types/TypeLibrary.h"
#include "runtime/types/ValueHolder.h"

#include <gtest/gtest.h>

#include <random>

namespace {

const ZOList& ListOf(TZOValueHolder& AHolder) {
    void* ref = nullptr;
    EXPECT_TRUE(AHolder.GetValue(ref));
    return *static_cast<ZOList*>(ref);
}

QString& TextAt(const ZOList& AList, int AIndex) {
    void* ref = nullptr;
    EXPECT_TRUE(AList.GetItem(AIndex, ref));
    return *static_cast<QString*>(ref);
}

struct RepeatedTexts : testing::Test {
    TZOTypeLibrary Library;
    TZOValueHolder Holder{Library.NewList(TZOTypeLibrary::Scalar(vkString)), true};

    const ZOList& Decode(const QStringList& ATexts) {
        TZOJson::Decode(("[\"" + ATexts.join(QStringLiteral("\",\"")) + "\"]").toUtf8(), Holder);
        return ListOf(Holder);
    }
};

} // namespace

TEST_F(RepeatedTexts, AreEachWhatWasWritten) {
    // Few letters and near lengths, so that texts repeat, share a beginning, and end where a word ends.
    const QString letters[] = {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("\u00E9"),
                               QStringLiteral("\u65E5")};
    std::mt19937 random(7);
    QStringList texts;
    for (int i = 0; i < 20'000; ++i) {
        const bool isUniform = random() % 4 > 0;
        QString text;
        for (auto length = random() % 20; length > 0; --length)
            text += letters[isUniform ? 0 : random() % 4];
        texts.append(text);
    }
    const ZOList& list = Decode(texts);
    ASSERT_EQ(list.Count(), texts.size());
    for (int i = 0; i < list.Count(); ++i)
        ASSERT_EQ(TextAt(list, i), texts[i]) << i;
}

TEST_F(RepeatedTexts, WithEscapesAreNotTakenForOthers) {
    QStringList texts;
    for (int i = 0; i < 100; ++i)
        texts << QStringLiteral("ab") << QStringLiteral("ab\\u0000") << QStringLiteral("\\u0061b");
    const ZOList& list = Decode(texts);
    for (int i = 0; i < list.Count(); ++i)
        ASSERT_EQ(TextAt(list, i), i % 3 == 1 ? QStringLiteral("ab") + QChar(0) : QStringLiteral("ab")) << i;
}

TEST_F(RepeatedTexts, ChangeAlone) {
    const ZOList& list = Decode(QStringList(100, QStringLiteral("open")));
    TextAt(list, 98)[0] = u'O';
    EXPECT_EQ(TextAt(list, 97), QStringLiteral("open"));
    EXPECT_EQ(TextAt(list, 98), QStringLiteral("Open"));
    EXPECT_EQ(TextAt(list, 99), QStringLiteral("open"));
}

TEST_F(RepeatedTexts, AreKeptOnce) {
    const ZOList& list = Decode(QStringList(100, QStringLiteral("open")));
    EXPECT_EQ(TextAt(list, 98).constData(), TextAt(list, 99).constData());
}
