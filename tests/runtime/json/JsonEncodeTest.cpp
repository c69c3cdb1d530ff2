#include "runtime/json/JsonCodec.h"

#include "runtime/types/Streams.h"
#include "runtime/types/TypeLibrary.h"

#include <QBuffer>

#include <gtest/gtest.h>

#include <limits>

namespace {

template <class T>
QByteArray Encoded(TZOValueKind AKind, const T& AValue) {
    return TZOJson::Encode(TZOTypeLibrary::Scalar(AKind), &AValue);
}

} // namespace

TEST(JsonEncode, WritesFloatsAsTheShortestTextThatReadsBackTheSame) {
    EXPECT_EQ(Encoded(vkFloat, 0.1), "0.1");
    EXPECT_EQ(Encoded(vkFloat, 1e300), "1e+300");
    EXPECT_EQ(Encoded(vkFloat, -0.0), "-0");
    EXPECT_THROW(Encoded(vkFloat, std::numeric_limits<double>::infinity()), EZORequestValueError);
    EXPECT_THROW(Encoded(vkFloat, std::numeric_limits<double>::quiet_NaN()), EZORequestValueError);
}

TEST(JsonEncode, WritesAll64BitsOfAnInteger) {
    EXPECT_EQ(Encoded(vkInt64, std::numeric_limits<qint64>::min()), "-9223372036854775808");
    EXPECT_EQ(Encoded(vkInteger, qint32(-5)), "-5");
    EXPECT_EQ(Encoded(vkBoolean, quint8(1)), "true");
}

TEST(JsonEncode, WritesAnUploadAsItsContentInBase64EveryTime) {
    QBuffer stream;
    stream.setData("any carnal pleas");
    stream.open(QIODevice::ReadOnly);
    ZOUpload upload;
    EXPECT_EQ(Encoded(vkUpload, upload), "null");
    upload.SetStream(&stream);
    EXPECT_EQ(Encoded(vkUpload, upload), "\"YW55IGNhcm5hbCBwbGVhcw==\"");
    EXPECT_EQ(Encoded(vkUpload, upload), "\"YW55IGNhcm5hbCBwbGVhcw==\"");
}

TEST(JsonEncode, LeavesAPropertyOutThatIsAnUploadWithoutAStream) {
    TZOTypeLibrary types;
    const auto* type = types.NewObject(QStringLiteral("O"))
                           .Property(QStringLiteral("file"), TZOTypeLibrary::Scalar(vkUpload))
                           .Property(QStringLiteral("name"), TZOTypeLibrary::Scalar(vkString))
                           .Type();
    TZOValueHolder holder(type, true);
    TZOJson::Decode(R"({"file": "abc", "name": "n"})", holder);
    EXPECT_EQ(TZOJson::Encode(holder), R"({"name":"n"})");
}

TEST(JsonEncode, WritesADownloadAndAnAbsentValueAsNull) {
    EXPECT_EQ(Encoded(vkDownload, ZODownload()), "null");
    EXPECT_EQ(TZOJson::Encode(TZOValueHolder(TZOTypeLibrary::Scalar(vkString), true)), "null");
}

TEST(JsonEncode, WritesAUnionWithoutTagAsNull) {
    TZOTypeLibrary types;
    for (const TZOUnionForm form : {ufTagged, ufBare}) {
        const auto* type = types.NewUnion(QStringLiteral("U"), QStringLiteral("tag"), form)
                               .Tag(QStringLiteral("a"), TZOTypeLibrary::Scalar(vkString))
                               .Type();
        TZOValueHolder holder(type, true);
        void* ref = nullptr;
        holder.GetByRef(ref);
        EXPECT_EQ(TZOJson::Encode(holder), "null");
    }
}
