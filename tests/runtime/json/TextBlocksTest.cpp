#include "runtime/json/JsonCodec.h"

#include "runtime/types/List.h"
#include "runtime/types/TypeLibrary.h"
#include "runtime/types/ValueHolder.h"

#include <gtest/gtest.h>

#include <random>
#include <thread>

namespace {

/// Lists of texts that were read from JSON, where they lie in common memory.
struct TextsOfAResponse : testing::Test {
    TZOTypeLibrary Library;
    TZOValueHolder Holder{Library.NewList(TZOTypeLibrary::Scalar(vkString)), true};

    QString& At(int AIndex) {
        void* ref = nullptr;
        EXPECT_TRUE(Holder.GetValue(ref));
        EXPECT_TRUE(static_cast<ZOList*>(ref)->GetItem(AIndex, ref));
        return *static_cast<QString*>(ref);
    }
    void Read(const QStringList& ATexts) {
        TZOJson::Decode(("[\"" + ATexts.join(QStringLiteral("\",\"")) + "\"]").toUtf8(), Holder);
    }
};

/// Texts of all lengths around those that are handled differently, of characters of one to four bytes.
QStringList ManyTexts() {
    const QString letters[] = {QStringLiteral("a"), QStringLiteral("\u00E9"), QStringLiteral("\u65E5"),
                               QStringLiteral("\U0001F600")};
    std::mt19937 random(3);
    QStringList texts;
    for (int length = 0; length < 600; ++length) {
        for (const unsigned rare : {1u, 20u, 2000u}) {
            QString text;
            for (int i = 0; i < length; ++i)
                text += letters[random() % rare == 0 ? random() % 4 : 0];
            texts.append(text);
        }
    }
    return texts;
}

} // namespace

TEST_F(TextsOfAResponse, AreWhatWasWritten) {
    const QStringList texts = ManyTexts();
    Read(texts);
    for (int i = 0; i < texts.size(); ++i)
        ASSERT_EQ(At(i), texts[i]) << i;
}

TEST_F(TextsOfAResponse, AreNeverNullAndEndWithAZero) {
    const QStringList texts = ManyTexts();
    Read(texts);
    for (int i = 0; i < texts.size(); ++i) {
        ASSERT_FALSE(At(i).isNull()) << i;
        ASSERT_EQ(At(i).utf16()[texts[i].size()], 0) << i;
    }
}

TEST_F(TextsOfAResponse, ChangeAlone) {
    const QStringList texts = ManyTexts();
    Read(texts);
    for (int i = 1; i < texts.size(); i += 2) {
        At(i).append(u'x');
        At(i).prepend(u'y');
        At(i).replace(u'a', u'b');
    }
    for (int i = 0; i < texts.size(); ++i) {
        QString expected = texts[i];
        if (i % 2)
            expected = u'y' + expected.replace(u'a', u'b') + u'x';
        ASSERT_EQ(At(i), expected) << i;
    }
}

TEST_F(TextsOfAResponse, TakeLittleMemoryAlongWhenTheyGrow) {
    const QStringList texts = ManyTexts();
    Read(texts);
    for (int i = 0; i < texts.size(); ++i) {
        QString copy = At(i);
        copy += u'x';
        ASSERT_LE(copy.capacity(), 2 * texts[i].size() + 2048) << i;
    }
}

TEST_F(TextsOfAResponse, OutliveIt) {
    const QStringList texts = ManyTexts();
    Read(texts);
    QStringList kept;
    for (int i = 0; i < texts.size(); i += 50)
        kept.append(At(i));
    Holder.Clear();
    for (int i = 0; i < kept.size(); ++i) {
        // The last one of its block may be changed in place.
        kept[i].append(u'x');
        ASSERT_EQ(kept[i], texts[i * 50] + u'x') << i;
    }
}

TEST_F(TextsOfAResponse, GoInAnotherThread) {
    const QStringList texts = ManyTexts();
    Read(texts);
    QStringList kept;
    for (int i = 0; i < texts.size(); ++i)
        kept.append(At(i));
    std::thread other([&] {
        EXPECT_EQ(kept, texts);
        kept.clear();
    });
    Holder.Clear();
    other.join();
    EXPECT_TRUE(kept.isEmpty());
}

TEST_F(TextsOfAResponse, KeepAByteOrderMarkAtTheirStart) {
    QStringList texts, escaped;
    for (int length = 0; length < 600; ++length) {
        texts.append(QChar(QChar::ByteOrderMark) + QString(length, u'a'));
        escaped.append(QStringLiteral("\\uFEFF") + QString(length, u'a'));
    }
    for (const QStringList& read : {texts, escaped}) {
        Read(read);
        for (int i = 0; i < texts.size(); ++i)
            ASSERT_EQ(At(i), texts[i]) << i;
    }
}

TEST_F(TextsOfAResponse, AreUnescaped) {
    Read({QStringLiteral("a\\u0000b"), QStringLiteral("\\ud83d\\ude00\\n"),
          QStringLiteral("\\\\").repeated(400), QStringLiteral("plain")});
    EXPECT_EQ(At(0), QStringLiteral("a") + QChar(0) + u'b');
    EXPECT_EQ(At(1), QStringLiteral("\U0001F600\n"));
    EXPECT_EQ(At(2), QString(400, u'\\'));
    EXPECT_EQ(At(3), QStringLiteral("plain"));
}
