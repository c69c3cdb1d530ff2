// Loaded into the real program: prints what its window says once it has started, then closes it.
#include <QApplication>
#include <QGenericPlugin>
#include <QLabel>
#include <QMainWindow>
#include <QTimer>
#include <QTreeWidget>

#include <cstdio>

class TClosingPlugin final : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "closing.json")

public:
    QObject* create(const QString&, const QString&) override {
        auto* timer = new QTimer(this);
        // What the program has posted to itself comes before the first turn.
        connect(timer, &QTimer::timeout, this, &TClosingPlugin::CloseWindow);
        timer->start(0);
        return timer;
    }

private:
    void CloseWindow() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (!qobject_cast<QMainWindow*>(widget) || !widget->isVisible() || FTurns++ < 2)
                continue;
            PrintTexts();
            QApplication::closeAllWindows();
            return;
        }
    }

    static void PrintTexts() {
        for (const QWidget* widget : QApplication::allWidgets()) {
            if (!widget->isVisible())
                continue;
            if (const auto* label = qobject_cast<const QLabel*>(widget))
                std::printf("%s\n", qUtf8Printable(label->text()));
            else if (const auto* list = qobject_cast<const QTreeWidget*>(widget))
                PrintRows(*list);
        }
    }

    static void PrintRows(const QTreeWidget& AList) {
        for (int row = 0; row < AList.topLevelItemCount(); ++row) {
            const QTreeWidgetItem* item = AList.topLevelItem(row);
            std::printf("%s: %s\n", qUtf8Printable(item->text(0)), qUtf8Printable(item->text(2)));
        }
    }

    int FTurns = 0;
};

#include "ClosingPlugin.moc"
