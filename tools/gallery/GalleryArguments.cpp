#include "gallery/GalleryArguments.h"

#include <QCommandLineParser>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora::gallery {
namespace {

const char *const workerOption = "--worker";

} // namespace

GalleryArguments GalleryArguments::of(const QCoreApplication &application)
{
    const QCommandLineOption quick{u"quick"_s, u"Only light, one pixel per point, the usual size."_s};
    QCommandLineOption worker{u"worker"_s, {}, u"share/shares"_s};
    worker.setFlags(QCommandLineOption::HiddenFromHelp);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Takes a picture of every screen of Quilmora in every state."_s);
    parser.addHelpOption();
    parser.addOptions({quick, worker});
    parser.addPositionalArgument(u"folder"_s, u"Where the pictures and index.html go."_s);
    parser.process(application);
    if (parser.positionalArguments().size() != 1) {
        parser.showHelp(2);
    }
    GalleryArguments arguments{.folder = QDir{QDir{parser.positionalArguments().constFirst()}.absolutePath()},
                               .plan = {}};
    if (parser.isSet(quick)) {
        arguments.plan = {{ColorScheme::light}, {1}, false};
    }
    if (parser.isSet(worker)) {
        const QStringList numbers = parser.value(worker).split(u'/');
        arguments.share = numbers.constFirst().toInt();
        arguments.shares = numbers.constLast().toInt();
    }
    return arguments;
}

bool GalleryArguments::isWorker(int argc, char **argv)
{
    return std::any_of(argv, argv + argc,
                       [](const char *argument) { return qstrcmp(argument, workerOption) == 0; });
}

QStringList GalleryArguments::forWorker(int workerShare, int workerShares) const
{
    QStringList list{QString::fromLatin1(workerOption), u"%1/%2"_s.arg(workerShare).arg(workerShares)};
    if (!plan.everySize) {
        list.append(u"--quick"_s);
    }
    return list << folder.path();
}

} // namespace quilmora::gallery
