#include "benchmarks/ValuesFixture.h"

#include <random>

namespace {

const ZOObject::TTypeInfo* RecordType(TZOTypeLibrary& ATypes) {
    const auto scalar = &TZOTypeLibrary::Scalar;
    const auto* author = ATypes.NewObject(QStringLiteral("Author"))
                             .Property(QStringLiteral("name"), scalar(vkString))
                             .Property(QStringLiteral("born"), scalar(vkDate))
                             .Type();
    return ATypes.NewObject(QStringLiteral("Record"))
        .Property(QStringLiteral("id"), scalar(vkInt64))
        .Property(QStringLiteral("title"), scalar(vkString))
        .Property(QStringLiteral("pages"), scalar(vkInteger))
        .Property(QStringLiteral("price"), scalar(vkFloat))
        .Property(QStringLiteral("available"), scalar(vkBoolean))
        .Property(QStringLiteral("added"), scalar(vkDateTime))
        .Property(QStringLiteral("author"), author)
        .Property(QStringLiteral("labels"), ATypes.NewMap(scalar(vkString)))
        .Type();
}

} // namespace

TRecordsFixture::TRecordsFixture(int ARows) : FRecords(ARows / RowsPerRecord) {
    FType = FTypes.NewList(RecordType(FTypes));
    std::mt19937 random(7);
    const QByteArray words[] = {"river", "of", "night", "the", "quiet", "garden", "letters", "h\xC3\xB6he"};
    const auto word = [&]() -> const QByteArray& { return words[random() % 8]; };
    FJson.reserve(qsizetype(FRecords) * 260);
    FJson += '[';
    for (int i = 0; i < FRecords; ++i) {
        if (i > 0)
            FJson += ',';
        FJson += "{\"id\":" + QByteArray::number(1'000'000 + i) + ",\"title\":\"" + word() + ' ' + word() +
                 ' ' + word() + "\",\"pages\":" + QByteArray::number(50 + int(random() % 900)) +
                 ",\"price\":" + QByteArray::number(double(random() % 10'000) / 100) +
                 ",\"available\":" + (random() % 2 ? "true" : "false") +
                 ",\"added\":\"2024-05-17T08:30:00Z\",\"author\":{\"name\":\"A. " + word() +
                 "\",\"born\":\"19" + QByteArray::number(10 + int(random() % 90)) +
                 "-03-14\"},\"labels\":{\"shelf\":\"" + word() + "\",\"language\":\"en\"}}";
    }
    FJson += ']';
}
