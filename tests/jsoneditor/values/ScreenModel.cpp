#include "tests/jsoneditor/values/ScreenModel.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

TScreenRow::TScreenRow(const QString& ALine) {
    Line = ALine.trimmed();
    Level = static_cast<int>(ALine.size() - ALine.trimmed().size()) / 2;
    Gray = Line.startsWith(QLatin1Char('~'));
    const QString plain = Gray ? Line.mid(1) : Line;
    const auto strip = [](QString AChunk, bool& AEditable) {
        AEditable = AChunk.startsWith(QLatin1Char('<')) && AChunk.endsWith(QLatin1Char('>'));
        return AEditable ? AChunk.mid(1, AChunk.size() - 2) : AChunk;
    };
    const auto colon = plain.indexOf(QLatin1Char(':'));
    HasKey = colon >= 0;
    if (HasKey)
        Key = strip(plain.left(colon), KeyEditable);
    Text = strip(plain.mid(HasKey ? colon + 2 : 0), Editable);
}

TNode* TNode::Field(const QString& AKey) {
    const auto found =
        std::find_if(Fields.begin(), Fields.end(), [&](const auto& f) { return f.first == AKey; });
    return found == Fields.end() ? nullptr : &found->second;
}

TNode& TNode::EnsureField(const QString& AKey) {
    Kind = Object;
    if (TNode* field = Field(AKey))
        return *field;
    return Fields.emplace_back(AKey, TNode()).second;
}

void TNode::RemoveField(const QString& AKey) {
    Fields.erase(std::remove_if(Fields.begin(), Fields.end(), [&](const auto& f) { return f.first == AKey; }),
                 Fields.end());
}

QJsonValue TNode::ToJson() const {
    switch (Kind) {
    case Null:
        return QJsonValue();
    case Number:
        return Number_;
    case Text:
        return Text_;
    case List: {
        QJsonArray array;
        for (const TNode& item : Items)
            array.append(item.ToJson());
        return array;
    }
    case Object: {
        QJsonObject object;
        for (const auto& [key, field] : Fields)
            object.insert(key, field.ToJson());
        return object;
    }
    }
    return QJsonValue();
}

void TScreenModel::Read(const QStringList& ALines) {
    FRows.clear();
    for (const QString& line : ALines)
        FRows.emplace_back(line);
}

int TScreenModel::ParentOf(int ARow) const {
    const auto level = [&](int AIndex) { return FRows[static_cast<size_t>(AIndex)].Level; };
    int row = ARow;
    while (row >= 0 && level(row) >= level(ARow))
        --row;
    return row;
}

int TScreenModel::TagRowOf(int AContainer) const {
    const size_t next = static_cast<size_t>(AContainer) + 1;
    return next < FRows.size() && FRows[next].IsTag() ? AContainer + 1 : -1;
}

int TScreenModel::ElementIndex(int ARow) const {
    const TScreenRow& self = FRows[static_cast<size_t>(ARow)];
    int index = 0;
    for (int i = ParentOf(ARow) + 1; i < ARow; ++i) {
        const TScreenRow& row = FRows[static_cast<size_t>(i)];
        index += row.Level == self.Level && !row.IsCloser() && !row.Gray;
    }
    return index;
}

bool TScreenModel::IsMapRow(int ARow) const {
    return ARow >= 0 && FRows[static_cast<size_t>(ARow)].Key.startsWith(QLatin1String("map"));
}

TNode* TScreenModel::Store(int ARow) {
    const TScreenRow& self = FRows[static_cast<size_t>(ARow)];
    const int parentRow = ParentOf(ARow);
    if (parentRow < 0)
        return &Root;
    TNode* parent = Store(parentRow);
    if (!parent)
        return nullptr;
    if (FRows[static_cast<size_t>(parentRow)].Text == QLatin1String("[")) {
        parent->Kind = TNode::List;
        const int index = ElementIndex(ARow);
        if (self.Gray)
            parent->Items.insert(parent->Items.begin() + index, TNode());
        return &parent->Items.at(static_cast<size_t>(index));
    }
    const bool isUnionValue = self.Key == QLatin1String("value") && TagRowOf(parentRow) >= 0;
    if (isUnionValue && self.Gray) {
        *parent = TNode();
        TNode& tag = parent->EnsureField(QStringLiteral("kind"));
        tag.Kind = TNode::Text;
        tag.Text_ = FRows[static_cast<size_t>(TagRowOf(parentRow))].Text;
    }
    if (IsMapRow(parentRow) && self.Gray) {
        parent->Kind = TNode::Object;
        if (self.KeyEditable || parent->Field(self.Key))
            return nullptr;
    }
    return &parent->EnsureField(self.Key);
}

void TScreenModel::Type(int ARow, const QString& AText) {
    TNode* node = Store(ARow);
    if (!node)
        return;
    const QString& key = FRows[static_cast<size_t>(ARow)].Key;
    const bool isText = key.size() == 2 && key.startsWith(QLatin1Char('s'));
    bool isNumber = false;
    const int number = AText.toInt(&isNumber);
    if (isText) {
        node->Kind = TNode::Text;
        node->Text_ = AText;
    } else {
        // Present first: a bad text leaves what was there before, or zero.
        node->Kind = TNode::Number;
        if (isNumber)
            node->Number_ = number;
    }
}

void TScreenModel::Delete(int ARow) {
    const TScreenRow& self = FRows[static_cast<size_t>(ARow)];
    const int parentRow = ParentOf(ARow);
    if (self.IsTag() || self.IsChoice() || self.IsCloser())
        return;
    if (parentRow < 0) {
        Root = TNode();
        return;
    }
    const bool isUnionValue = self.Key == QLatin1String("value") && TagRowOf(parentRow) >= 0;
    if (!self.HasKey || isUnionValue || self.Gray)
        return;
    Store(parentRow)->RemoveField(self.Key);
}

bool TScreenModel::IsElement(int ARow) const {
    const TScreenRow& self = FRows[static_cast<size_t>(ARow)];
    const int parent = ParentOf(ARow);
    return parent >= 0 && !self.IsCloser() && FRows[static_cast<size_t>(parent)].Text == QLatin1String("[");
}

void TScreenModel::DeleteElement(int ARow) {
    if (FRows[static_cast<size_t>(ARow)].Gray)
        return;
    auto& items = Store(ParentOf(ARow))->Items;
    items.erase(items.begin() + ElementIndex(ARow));
}

void TScreenModel::Choose(int ARow) {
    const int tagRow = ParentOf(ARow);
    const QString name = FRows[static_cast<size_t>(ARow)].Text.mid(2);
    const bool isUnion = FRows[static_cast<size_t>(tagRow)].Key == QLatin1String("kind");
    TNode* node = Store(ParentOf(tagRow));
    // A union's tag waits for its value, unless it carries none.
    if (!node || (isUnion && name != QLatin1String("none")))
        return;
    *node = TNode();
    TNode& tag = node->EnsureField(FRows[static_cast<size_t>(tagRow)].Key);
    tag.Kind = TNode::Text;
    tag.Text_ = name;
}
