// A gigabyte each way, from the page to a server that is not ours and back.
#include "tests/pages/PagesFixture.h"
#include "tests/servers/NginxServer.h"

#include "jsoneditor/view/RestView.h"
#include "jsoneditor/view/ViewRowLayout.h"
#include "runtime/service/ServiceBuilder.h"

#include <QCryptographicHash>
#include <QFile>
#include <QPushButton>

namespace {

constexpr qint64 Gibibyte = qint64(1) << 30;
/// What a transfer may add to the process, whatever is transferred.
constexpr qint64 MemoryBound = qint64(32) << 20;

QByteArray Checksum(const QString& AName) {
    QFile file(AName);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << AName.toStdString();
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(&file);
    return hash.result().toHex();
}

/// The most memory that the process has had, in bytes, since ResetPeak.
qint64 PeakMemory() {
    QFile file(QStringLiteral("/proc/self/status"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    for (const QByteArray& line : file.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toLongLong() * 1024;
    return -1;
}

void ResetPeak() {
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("5");
}

class LargeTransfer : public PagesTest {
protected:
    LargeTransfer() {
        using P = TZOServiceParam;
        TZOServiceBuilder service(QStringLiteral("TFileService"), {}, QString::fromUtf8(Server.Url({})));
        TZOTypeLibrary& types = service.Types();
        service.Operation(QStringLiteral("Download"), {}, "GET", QStringLiteral("/files/large"), {},
                          types.Scalar(vkDownload));
        service.Operation(QStringLiteral("Upload"), {}, "PUT", QStringLiteral("/upload/stored"),
                          {P::InBody(QStringLiteral("file"), types.Scalar(vkUpload), {})}, nullptr);
        Register(std::make_unique<TZORestServiceClass>(QStringLiteral("TFileService"), service.Build()));
        Source = QString::fromUtf8(Server.MakeFile("large", Gibibyte));
    }

    void ShowOperation(const QString& AName) {
        ShowShell();
        Open(QStringLiteral("TFileService"));
        Open(AName);
    }
    QString ResponseLine(int ARow) const {
        const auto* view = Find<QWidget>("RespPanel")->findChild<TZORestView*>();
        const TZOViewRow* row = view->RowAt(ARow);
        return row && row->Layout() ? row->Layout()->GetChunks(0)->Text() : QString();
    }
    /// Executes, and answers what that added to the process's memory.
    qint64 Execute() {
        ResetPeak();
        const qint64 before = PeakMemory();
        QTest::mouseClick(Find<QPushButton>("ExecButton"), Qt::LeftButton);
        Settle();
        return PeakMemory() - before;
    }

    TNginxServer Server;
    QString Source;
};

TEST_F(LargeTransfer, ADownloadArrivesWholeInFlatMemory) {
    ShowOperation(QStringLiteral("Download"));
    const QString target = Folder.filePath(QStringLiteral("large"));
    TestDialogs.Answers.emplace_back(target);
    const qint64 added = Execute();
    EXPECT_EQ(ResponseLine(0), QStringLiteral("File downloaded to:"));
    EXPECT_EQ(ResponseLine(1), target + QStringLiteral(" (1073741824 bytes)"));
    EXPECT_LT(added, MemoryBound);
    EXPECT_EQ(Checksum(target), Checksum(Source));
    RecordProperty("AddedMemory", QString::number(added).toStdString());
}

TEST_F(LargeTransfer, AnUploadArrivesWholeInFlatMemory) {
    ShowOperation(QStringLiteral("Upload"));
    TestDialogs.Answers.emplace_back(Source);
    auto* view = Find<QWidget>("ReqPanel")->findChild<TZORestView*>();
    const QRect row = view->RowAt(1)->Layout()->Bounds();
    QTest::mouseClick(view, Qt::LeftButton, {}, QPoint(row.left() + 300, row.center().y()));
    QTest::mouseDClick(view, Qt::LeftButton, {}, QPoint(row.left() + 40, row.center().y()));
    const qint64 added = Execute();
    EXPECT_EQ(ResponseLine(0), QStringLiteral("Ok"));
    EXPECT_LT(added, MemoryBound);
    EXPECT_EQ(Checksum(Server.FilePath(QStringLiteral("upload/stored"))), Checksum(Source));
    RecordProperty("AddedMemory", QString::number(added).toStdString());
}

} // namespace
