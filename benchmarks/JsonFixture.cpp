#include "benchmarks/JsonFixture.h"

#include <random>

TJsonFixture::TJsonFixture(int AMegabytes) {
    const auto scalar = &TZOTypeLibrary::Scalar;
    const auto* author = FTypes.NewObject(QStringLiteral("Author"))
                             .Property(QStringLiteral("name"), scalar(vkString))
                             .Property(QStringLiteral("born"), scalar(vkDate))
                             .Type();
    FType = FTypes.NewList(FTypes.NewObject(QStringLiteral("Book"))
                               .Property(QStringLiteral("id"), scalar(vkInt64))
                               .Property(QStringLiteral("title"), scalar(vkString))
                               .Property(QStringLiteral("pages"), scalar(vkInteger))
                               .Property(QStringLiteral("price"), scalar(vkFloat))
                               .Property(QStringLiteral("available"), scalar(vkBoolean))
                               .Property(QStringLiteral("tags"), FTypes.NewList(scalar(vkString)))
                               .Property(QStringLiteral("author"), author)
                               .Property(QStringLiteral("added"), scalar(vkDateTime))
                               .Type());
    std::mt19937 random(42);
    const QByteArray words[] = {"river", "of", "night", "the", "quiet", "garden", "letters", "h\xC3\xB6he"};
    FJson = "[";
    while (FJson.size() < qsizetype(AMegabytes) * 1'000'000) {
        const int pages = 50 + int(random() % 900);
        if (FCount > 0)
            FJson += ',';
        FJson += "{\"id\":" + QByteArray::number(1'000'000 + FCount) + ",\"title\":\"" + words[random() % 8] +
                 ' ' + words[random() % 8] + ' ' + words[random() % 8] +
                 "\",\"pages\":" + QByteArray::number(pages) +
                 ",\"price\":" + QByteArray::number(double(random() % 10'000) / 100) +
                 ",\"available\":" + (random() % 2 ? "true" : "false") + ",\"tags\":[\"" +
                 words[random() % 8] + "\",\"" + words[random() % 8] + "\"],\"author\":{\"name\":\"A. " +
                 words[random() % 8] + "\",\"born\":\"19" + QByteArray::number(10 + int(random() % 90)) +
                 "-03-14\"},\"added\":\"2024-05-17T08:30:00Z\",\"_links\":{\"self\":\"/books/" +
                 QByteArray::number(FCount) + "\"}}";
        FPages += pages;
        ++FCount;
    }
    FJson += ']';
}

qint64 TJsonFixture::PagesOf(const ZOList& AList) {
    qint64 sum = 0;
    for (int i = 0; i < AList.Count(); ++i) {
        void* ref = nullptr;
        if (AList.GetItem(i, ref) && ZOObject::TData::GetProp(*static_cast<ZOObject**>(ref), 2, ref))
            sum += *static_cast<qint32*>(ref);
    }
    return sum;
}
