#include "reliability/CoverMaker.h"

#include <QCoreApplication>

#include <cstdio>

using namespace Qt::StringLiterals;

/// quilmora-cover-maker NAME COUNT ENDPOINT: opens the store of the user whose home it finds, waits for a
/// line on standard input, makes that many covers, and ends.
int main(int argc, char *argv[])
{
    const QCoreApplication application{argc, argv};
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4) {
        return 2;
    }
    quilmora::test::CoverMaker maker{arguments.at(1), arguments.at(2).toInt(), arguments.at(3)};
    // Queued: finishing before the loop runs would not be heard.
    QObject::connect(&maker, &quilmora::test::CoverMaker::finished, &application, &QCoreApplication::quit,
                     Qt::QueuedConnection);
    maker.start();
    std::getchar();
    maker.makeNext();
    return QCoreApplication::exec();
}
