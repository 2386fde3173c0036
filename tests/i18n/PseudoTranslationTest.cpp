#include "ui/ContentView.h"
#include "ui/TarnwickApp.h"
#include "ui/UiHarness.h"
#include "update/FeedServer.h"
#include "update/UpdateChecker.h"

#include <QAction>
#include <QRegularExpression>
#include <QTest>
#include <QTranslator>

using namespace tarnwick;
using namespace tarnwick::testing;

// Marks every text it is asked for: a visible text without the marks never passed through it.
class MarkingTranslator : public QTranslator {
public:
    bool isEmpty() const override { return false; }
    QString translate(const char*, const char* source, const char*, int) const override {
        return u'⟦' + QString::fromUtf8(source) + u'⟧';
    }
};

class PseudoTranslationTest : public QObject {
    Q_OBJECT

    QStringList m_literals;
    // Texts that the model holds as they were made, such as its error message.
    QStringList m_heldByTheModel;

    // Not language: markup, paths, dotted names (files, hosts, addresses, versions), the test's
    // machine, the app's name, and sizes, whose units QLocale writes in the locale's language.
    void check(const QObject* owner, QString text) {
        static const QRegularExpression notLanguage(QStringLiteral(
            "<[^>]*>|&\\w+;|https?://\\S+|(^|\\s)/\\S+|\\d[\\d.,\\s]*(bytes|[kMGT]?B)\\b|"
            "[\\w-]+(\\.[\\w-]+)+|Bench Mill|Tarnwick"));
        static const QRegularExpression innermostMark(QStringLiteral("⟦[^⟦⟧]*⟧"));
        for (const QString& held : std::as_const(m_heldByTheModel))
            text.remove(held);
        text.remove(notLanguage);
        while (text.contains(innermostMark))
            text.remove(innermostMark);
        if (text.contains(QRegularExpression(QStringLiteral("\\p{L}"))))
            m_literals.append(QStringLiteral("%1 \"%2\": %3")
                                  .arg(QLatin1String(owner->metaObject()->className()),
                                       owner->objectName(), text.simplified()));
    }

    // What the visible windows, widgets and actions show or give to assistive technology.
    void checkVisibleWindows() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            const QList<QObject*> objects = window->findChildren<QObject*>() << window;
            for (const QObject* object : objects) {
                const auto* widget = qobject_cast<const QWidget*>(object);
                const auto* action = qobject_cast<const QAction*>(object);
                if ((widget && !widget->isVisible()) || (action && !action->isVisible()))
                    continue;
                for (const char* property : {"text", "title", "windowTitle", "toolTip",
                                             "accessibleName", "accessibleDescription"})
                    check(object, object->property(property).toString());
            }
        }
    }

private Q_SLOTS:
    void everyVisibleTextIsTranslated_data() {
        QTest::addColumn<bool>("whileOpen");
        QTest::newRow("windows made in the language") << false;
        // Each check switches to the marks under the open windows and back.
        QTest::newRow("language changed under open windows") << true;
    }

    // The empty window, the sheet, a running upload, then its failure alert beside About,
    // Settings and the alert of the launch's update check.
    void everyVisibleTextIsTranslated() {
        QFETCH(bool, whileOpen);
        m_literals.clear();
        m_heldByTheModel.clear();
        MarkingTranslator marking;
        const auto speakMarks = [&marking](bool on) {
            if (on)
                QCoreApplication::installTranslator(&marking);
            else
                QCoreApplication::removeTranslator(&marking);
            // One round tells the windows, the next sets the texts that follow the change.
            QCoreApplication::processEvents();
            QCoreApplication::processEvents();
        };
        const auto check = [&] {
            if (whileOpen)
                speakMarks(true);
            checkVisibleWindows();
            if (whileOpen)
                speakMarks(false);
        };
        speakMarks(!whileOpen);
        ModelHarness h;
        FeedServer feed;
        feed.respond(200, "{\"version\":\"9.4.1\",\"url\":\"https://example.test/get\"}");
        ui::TarnwickApp app(
            std::move(h.model),
            std::make_unique<UpdateChecker>(temporaryStore(h.dir, QStringLiteral("u")),
                                            QStringLiteral("1.0"), nullptr, feed.url),
            [&] { return temporaryStore(h.dir, QStringLiteral("shell")); });
        app.start();
        QVERIFY(QTest::qWaitForWindowExposed(&app.mainWindow()));
        check();

        app.model().selectMachine(
            ModelHarness::machine(QStringLiteral("Bench Mill"), QStringLiteral("127.0.0.1")));
        app.model().chooseFile(h.jobFile(QStringLiteral("part.nc")));
        app.model().prepareUpload();
        QTRY_VERIFY(visibleWindow<QDialog>(QStringLiteral("uploadConfirmation")));
        check();

        app.model().upload(true);
        Q_EMIT h.uploaders.last()->progress({TransferProgress::Phase::Uploading, 400, 1000, 2e6});
        check();
        Q_EMIT h.uploaders.last()->failed(UploadError::timedOut());
        app.showAbout();
        app.showSettings();
        QTRY_VERIFY(visibleWindow<QMessageBox>(QStringLiteral("updateAlert")));
        QVERIFY(visibleWindow<QMessageBox>(QStringLiteral("errorAlert")));
        if (whileOpen)
            m_heldByTheModel.append(app.model().errorMessage().value());
        check();

        speakMarks(false);
        m_literals.removeDuplicates();
        for (const QString& literal : std::as_const(m_literals))
            qWarning("not translated: %s", qPrintable(literal));
        QCOMPARE(m_literals.size(), 0);
    }
};

QTEST_MAIN(PseudoTranslationTest)
#include "PseudoTranslationTest.moc"
