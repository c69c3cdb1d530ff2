// What is told about a row beyond what it shows.
#include "jsoneditor/values/DataRow_p.h"
#include "jsoneditor/values/ListElem_p.h"
#include "jsoneditor/values/MapItem_p.h"
#include "jsoneditor/values/ObjectProp_p.h"

#include "platform/TextConversion.h"

#include <QCoreApplication>

namespace {

QString Tr(const char* AText) { return QCoreApplication::translate("TZOObjectDataSource", AText); }

/// AName as one part of a JSON pointer.
QString PointerPart(QString AName) {
    AName.replace(QLatin1Char('~'), QStringLiteral("~0")).replace(QLatin1Char('/'), QStringLiteral("~1"));
    return QLatin1Char('/') + AName;
}

/// The part of the pointer that AStep stands for in a value of AContainerType; "-" is what follows the last.
QString PointerPart(const TZOTypeInfo* AContainerType, const TZOPathStep& AStep) {
    if (AStep.Prop)
        return PointerPart(AStep.Prop->Name);
    if (AStep.Tag)
        return static_cast<const ZOUnion::TTypeInfo*>(AContainerType)->Form() == ufBare
                   ? QString()
                   : QStringLiteral("/value");
    if (AContainerType->Kind() == vkList)
        return AStep.IsNew ? QStringLiteral("/-") : QLatin1Char('/') + QString::number(AStep.Index);
    return PointerPart(AStep.Key);
}

/// Of lists and maps of each other, which may hold nothing but themselves.
constexpr int MaxContainers = 8;

QString TypeText(const TZOTypeInfo* AType, int ALevel = 0) {
    const auto* list = AType->Kind() == vkList ? static_cast<const ZOList::TTypeInfo*>(AType) : nullptr;
    const auto* map = AType->Kind() == vkMap ? static_cast<const ZOMap::TTypeInfo*>(AType) : nullptr;
    if (!AType->Name().isEmpty() && AType->Name() != KindName(AType->Kind()))
        return QStringLiteral("%1 (%2)").arg(AType->Name(), KindName(AType->Kind()));
    if (!list && !map)
        return KindName(AType->Kind());
    if (ALevel == MaxContainers)
        return QStringLiteral("...");
    return Tr("%1 of %2")
        .arg(KindName(AType->Kind()), TypeText(list ? list->ItemType() : map->ItemType(), ALevel + 1));
}

} // namespace

QString TZOObjectDataSource::TDataRow::Pointer() const {
    QString pointer;
    for (const TDataRow* row = this; row->Parent(); row = row->DataParent())
        pointer.prepend(PointerPart(row->DataParent()->Type(), row->PathStep()));
    return pointer;
}

QString TZOObjectDataSource::TDataRow::Hint() const {
    const PProperty property = PathStep().Prop;
    QStringList lines;
    QString first = TypeText(Type());
    if (property && property->Required)
        first += Tr(", required");
    if (property && property->ReadOnly)
        first += Tr(", read-only");
    const QString pointer = Pointer();
    lines.append(pointer.isEmpty() ? first : pointer + QStringLiteral(": ") + first);
    for (const QString& text : {property ? property->Description : QString(), Type()->Description()}) {
        if (!text.isEmpty() && !lines.contains(text))
            lines.append(text);
    }
    if (!Type()->AllowedValues().isEmpty())
        lines.append(Tr("One of: %1").arg(Type()->AllowedValues().join(QStringLiteral(", "))));
    return lines.join(QLatin1Char('\n'));
}

QStringList TZOObjectDataSource::TDataRow::Choices() const {
    if (Type()->Kind() == vkBoolean && Type()->AllowedValues().isEmpty())
        return {BoolToStr(true), BoolToStr(false)};
    return Type()->AllowedValues();
}

QString TZOObjectDataSource::RowHint(TZOViewRow* ARow) {
    auto* row = static_cast<TRow*>(ARow);
    // Tags, their choices and closing rows belong to the value above them.
    while (!row->AsDataRow())
        row = row->Parent();
    return row->AsDataRow()->Hint();
}
