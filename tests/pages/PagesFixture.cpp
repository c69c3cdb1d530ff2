#include "tests/pages/PagesFixture.h"

#include "platform/ExceptionDisplay.h"
#include "platform/Exceptions.h"
#include "platform/IdeTheming.h"

#include <QCoreApplication>
#include <QPointer>
#include <QStyle>

std::unique_ptr<TZORestServiceClass> MakeServiceClass(const QString& AName, const QString& ADescription,
                                                      const QList<TTestOper>& AOpers) {
    auto types = std::make_unique<TZOTypeLibrary>();
    TZORestService::TTypeInfo::TDeclaration declaration;
    declaration.Name = AName;
    declaration.Description = ADescription;
    for (const TTestOper& item : AOpers) {
        TZORestService::TOper oper;
        oper.Name = item.Name;
        oper.Request = types->NewObject(item.Name + QStringLiteral("Request"), item.Description).Type();
        declaration.Opers.push_back(oper);
    }
    declaration.Scopes = {{QStringLiteral("read"), true},
                          {QStringLiteral("write"), false},
                          {QStringLiteral("admin&all"), true}};
    declaration.Schemes = {{QStringLiteral("key"), skApiKeyHeader, "X-Key"}};
    declaration.Security = {{{0}}};
    auto info = std::make_unique<TZORestService::TTypeInfo>(std::move(declaration), std::move(types));
    return std::make_unique<TZORestServiceClass>(AName, std::move(info));
}

PagesTest::PagesTest() {
    qputenv("ZO_SETTINGS_FILE", Folder.filePath(QStringLiteral("settings.db")).toUtf8());
    SetExceptionDisplay([this](QWidget*, const std::exception& AException) {
        Errors.append(ExceptionClassName(AException));
    });
    SetDialogs(&TestDialogs);
    TZOIdeTheming::SetTheme(thLight);
    StartPages();
}

PagesTest::~PagesTest() {
    Shell.reset();
    StopPages();
    EXPECT_EQ(Errors, QStringList());
    TZOIdeTheming::SetTheme(thSystem);
    SetDialogs(nullptr);
    SetExceptionDisplay({});
    qunsetenv("ZO_SETTINGS_FILE");
}

void PagesTest::Register(std::unique_ptr<TZORestServiceClass> AClass) {
    TZORestServiceClass::Register(AClass.get());
    Classes.push_back(std::move(AClass));
}

void PagesTest::ShowShell() {
    Shell = std::make_unique<TZOShellFrame>();
    Shell->resize(800, 600);
    Shell->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(Shell.get()));
    Shell->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(Shell.get()));
    Settle();
}

void PagesTest::Settle() { QCoreApplication::processEvents(); }

QStringList PagesTest::Stack() const {
    QStringList captions;
    for (int i = 0; i < Shell->GetNavStackCount(); ++i)
        captions.append(Shell->GetNavStack(i)->Caption());
    return captions;
}

QStringList PagesTest::Rows() const {
    QStringList rows;
    const QAbstractItemModel* model = List()->model();
    for (int i = 0; i < model->rowCount(); ++i)
        rows.append(model->index(i, 0).data().toString());
    return rows;
}

QModelIndex PagesTest::Row(const QString& AName) const {
    const qsizetype row = Rows().indexOf(AName);
    EXPECT_GE(row, 0) << AName.toStdString();
    return List()->model()->index(static_cast<int>(row), 0);
}

void PagesTest::ClickRow(const QString& AName) {
    QTest::mouseClick(List()->viewport(), Qt::LeftButton, {}, List()->visualRect(Row(AName)).center());
}

void PagesTest::DoubleClickRow(const QString& AName, Qt::MouseButton AButton) {
    const QPoint place = List()->visualRect(Row(AName)).center();
    const QPointer<QWidget> rows = List()->viewport();
    QTest::mouseClick(rows, AButton, {}, place);
    QTest::mouseDClick(rows, AButton, {}, place);
    // Else the button stays down for every click through a window that follows, in other tests too.
    if (rows)
        QTest::mouseRelease(rows, AButton, {}, place);
    Settle();
}

void PagesTest::Open(const QString& AName) { DoubleClickRow(AName); }

QColor PagesTest::TextColor(const QWidget* AWidget) {
    return AWidget->palette().color(QPalette::Active, QPalette::WindowText);
}

QImage PagesTest::RowImage(const QString& AName) const {
    return List()->viewport()->grab(List()->visualRect(Row(AName))).toImage();
}
