#include "BuildConfig.h"
#include "app/SettingsStore.h"
#include "cli/Commands.h"
#include "cli/Console.h"
#include "update/UpdateChecker.h"

#include <QCommandLineParser>
#include <QEventLoop>
#include <QNetworkAccessManager>

namespace tarnwick::cli {

namespace {

void printOutcome(const UpdateChecker::Kind& kind) {
    if (const auto* available = std::get_if<UpdateChecker::UpdateAvailable>(&kind)) {
        out() << "Update Available: " << available->version.description() << ' '
              << available->url.toString(QUrl::FullyEncoded) << '\n';
    } else {
        out() << "Up to Date\n";
    }
    out().flush();
}

} // namespace

int runCheckUpdate(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Asks the update feed whether a newer version of Tarnwick exists."));
    parser.addHelpOption();
    const QCommandLineOption feedOption(
        QStringLiteral("feed-url"),
        QStringLiteral("Ask this feed instead of %1.").arg(UpdateFeed::feedURL().toString()),
        QStringLiteral("URL"));
    parser.addOption(feedOption);
    if (!parser.parse(arguments))
        return fail(QStringLiteral("tarnwick-cli check-update: ") + parser.errorText(), Usage);
    if (parser.isSet(QStringLiteral("help"))) {
        // Qt's first line names the program file; ours names the command as it is typed.
        QString help = parser.helpText();
        help.replace(0, help.indexOf(u'\n'),
                     QStringLiteral("Usage: ") + arguments.constFirst() +
                         QStringLiteral(" [--feed-url URL]"));
        out() << help;
        out().flush();
        return Success;
    }
    if (!parser.positionalArguments().isEmpty())
        return fail(QStringLiteral("tarnwick-cli check-update: unexpected argument '") +
                        parser.positionalArguments().constFirst() + u'\'',
                    Usage);

    QUrl feed = UpdateFeed::feedURL();
    if (parser.isSet(feedOption)) {
        feed = QUrl(parser.value(feedOption), QUrl::StrictMode);
        const QString scheme = feed.scheme();
        if (!feed.isValid() || feed.host().isEmpty() ||
            (scheme != QLatin1String("http") && scheme != QLatin1String("https")))
            return fail(QStringLiteral("tarnwick-cli check-update: '") + parser.value(feedOption) +
                            QStringLiteral("' is not an http or https URL"),
                        Usage);
    }

    QNetworkAccessManager network;
    UpdateChecker checker(openStandardStore(), QString::fromLatin1(build::version), &network, feed);
    QEventLoop loop;
    QObject::connect(&checker, &UpdateChecker::isCheckingChanged, &loop, [&loop](bool checking) {
        if (!checking)
            loop.quit();
    });
    checker.check(true);
    loop.exec();

    // A manual check always reports its outcome.
    const UpdateChecker::Kind& kind = checker.outcome()->kind;
    if (const auto* failed = std::get_if<UpdateChecker::Failed>(&kind))
        return fail(QStringLiteral("Update Check Failed: ") + failed->message, Failure);
    printOutcome(kind);
    return Success;
}

} // namespace tarnwick::cli
