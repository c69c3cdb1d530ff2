#include "tests/jsoneditor/values/ValueTypes.h"
#include "tests/jsoneditor/values/ValueView.h"

#include "jsoneditor/values/ValueText.h"
#include "jsoneditor/view/RowSearch.h"

#include <gtest/gtest.h>

namespace {

/// The lines, without their indentation, of the rows that a search finds.
QStringList Found(const TValueView& AView, const QString& AText) {
    QStringList lines;
    const auto search = AView.View.DataSource()->NewSearch(AText);
    for (TZOViewRow* row = AView.View.GetFirst(); row; row = row->Next())
        if (search->Matches(row))
            lines.append(AView.LineOf(row));
    return lines;
}

TEST(RowSearch, FindsWhatEachKindShows) {
    TZOTypeLibrary library;
    const auto scalar = &TZOTypeLibrary::Scalar;
    const auto* type = library.NewObject(QStringLiteral("All"))
                           .Property(QStringLiteral("text"), scalar(vkString))
                           .Property(QStringLiteral("small"), scalar(vkInteger))
                           .Property(QStringLiteral("large"), scalar(vkInt64))
                           .Property(QStringLiteral("flag"), scalar(vkBoolean))
                           .Property(QStringLiteral("price"), scalar(vkFloat))
                           .Property(QStringLiteral("moment"), scalar(vkDateTime))
                           .Property(QStringLiteral("day"), scalar(vkDate))
                           .Property(QStringLiteral("any"), scalar(vkAny))
                           .Property(QStringLiteral("list"), library.NewList(scalar(vkInteger)))
                           .Property(QStringLiteral("map"), library.NewMap(scalar(vkString)))
                           .Type();
    const TValueView view(
        type, R"({"text": "Gr\u00dc\u00dfe", "small": -123, "large": 9007199254740993, "flag": true,
        "price": 1.5e300, "moment": "2024-05-17T08:30:00Z", "day": "2023-01-02", "any": {"deep": [1]},
        "list": [7, null, 77], "map": {"Key": "value"}})");
    const std::pair<const char16_t*, int> cases[] = {
        {u"gr\u00fc", 1}, {u"-12", 1},  {u"123", 1},     {u"740993", 1}, {u"TRUE", 1},    {u"1.5", 1},
        {u"e+300", 1},    {u"E300", 0}, {u"08:30", 1},   {u"t08", 1},    {u"2023-01", 1}, {u"deep", 1},
        {u"7", 4},        {u"null", 1}, {u"key", 1},     {u"value", 1},  {u"small", 1},   {u"[", 1},
        {u"]", 1},        {u": ", 0},   {u"nowhere", 0}, {u"list", 1},   {u"alse", 0}};
    for (const auto& [text, count] : cases) {
        const QString needle = QString::fromUtf16(text);
        EXPECT_EQ(Found(view, needle).size(), count)
            << needle.toStdString() << ": " << Found(view, needle).join(u'|').toStdString();
    }
}

TEST(RowSearch, FindsTagsAndWhatIsStillToBeEntered) {
    TValueTypes types;
    TValueView view(types.Holding(types.Shape), R"({"p": {"type": "circle", "radius": 4}})");
    EXPECT_EQ(Found(view, QStringLiteral("CIRC")).size(), 1);
    TValueView person(types.Person, R"({"name": "Ada"})");
    EXPECT_EQ(Found(person, QStringLiteral("age")).size(), 0);
    person.PressOn(QStringLiteral("{"), QStringLiteral("Insert"));
    EXPECT_EQ(Found(person, QStringLiteral("age")).size(), 1) << person.Rows().toStdString();
}

TEST(RowSearch, FindsWhatAHookShowsInstead) {
    TZOValueHolder holder(TZOTypeLibrary::Scalar(vkInteger), true);
    void* ref = nullptr;
    holder.SetValue(true, ref);
    TZORestView view;
    TZOObjectDataSource source(&holder, false, false);
    source.OnGetValue = [](TZOObjectDataSource*, const TZOTypeInfo*, bool, const void*, QString& AText) {
        AText = QStringLiteral("something else");
    };
    view.SetDataSource(&source);
    EXPECT_TRUE(source.NewSearch(QStringLiteral("ELSE"))->Matches(view.GetFirst()));
    view.SetDataSource(nullptr);
}

} // namespace
