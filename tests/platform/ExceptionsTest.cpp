#include "platform/Exceptions.h"
#include "platform/ExceptionDisplay.h"

#include <gtest/gtest.h>

#include <stdexcept>

TEST(Exceptions, KnowTheNameOfTheirOwnClassAlsoThroughTheBase) {
    const EFOpenError error(QStringLiteral("Cannot open file \"a\""));
    const EException& base = error;
    EXPECT_EQ(base.ClassName(), QStringLiteral("EFOpenError"));
    EXPECT_EQ(base.Message(), QStringLiteral("Cannot open file \"a\""));
}

TEST(Exceptions, OfOtherLibrariesAreNamedByTheirType) {
    const std::out_of_range error("beyond");
    EXPECT_EQ(ExceptionClassName(error), QStringLiteral("std::out_of_range"));
    EXPECT_EQ(ExceptionMessage(error), QStringLiteral("beyond"));
}

TEST(ExceptionDisplay, GetsWhatAGuardedCallRaises) {
    QString shown;
    auto previous =
        SetExceptionDisplay([&](QWidget*, const std::exception& e) { shown = ExceptionMessage(e); });
    EXPECT_FALSE(GuardedCall(nullptr, [] { throw EConvertError(QStringLiteral("not a number")); }));
    EXPECT_EQ(shown, QStringLiteral("not a number"));
    EXPECT_TRUE(GuardedCall(nullptr, [] {}));
    SetExceptionDisplay(std::move(previous));
}
