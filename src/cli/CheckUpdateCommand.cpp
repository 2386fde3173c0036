#include "cli/CheckUpdateCommand.h"

#include "BuildConfig.h"
#include "app/SettingsStore.h"
#include "cli/Console.h"
#include "update/UpdateChecker.h"

#include <QEventLoop>
#include <QNetworkAccessManager>

namespace tarnwick::cli {

CheckUpdateCommand::CheckUpdateCommand()
    : Command(QStringLiteral("check-update"),
              tr("Asks the update feed whether a newer version exists"),
              QStringLiteral("tarnwick-cli check-update [--feed-url URL]"),
              tr("Asks the update feed whether a newer version of Tarnwick exists."))
    , m_feed(QStringLiteral("feed-url"),
             tr("Ask this feed instead of %1.").arg(UpdateFeed::feedURL().toString()),
             QStringLiteral("URL")) {
    parser().addOption(m_feed);
}

int CheckUpdateCommand::run(const QCommandLineParser& parser) {
    if (!parser.positionalArguments().isEmpty())
        return usageError(tr("tarnwick-cli check-update: unexpected argument '%1'")
                              .arg(parser.positionalArguments().constFirst()));
    QUrl feed = UpdateFeed::feedURL();
    if (parser.isSet(m_feed)) {
        feed = QUrl(parser.value(m_feed), QUrl::StrictMode);
        const QString scheme = feed.scheme();
        if (!feed.isValid() || feed.host().isEmpty() ||
            (scheme != QLatin1String("http") && scheme != QLatin1String("https")))
            return usageError(tr("tarnwick-cli check-update: '%1' is not an http or https URL")
                                  .arg(parser.value(m_feed)));
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
        return fail(tr("Update Check Failed: %1").arg(failed->message), Failure);
    if (const auto* available = std::get_if<UpdateChecker::UpdateAvailable>(&kind))
        out() << tr("Update Available: %1 %2")
                     .arg(available->version.description(),
                          available->url.toString(QUrl::FullyEncoded))
              << '\n';
    else
        out() << tr("Up to Date") << '\n';
    out().flush();
    return Success;
}

} // namespace tarnwick::cli
