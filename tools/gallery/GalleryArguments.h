#pragma once

#include "gallery/ScreenshotPlan.h"

#include <QDir>

class QCoreApplication;

namespace quilmora::gallery {

/// What the program was asked for on its command line.
struct GalleryArguments {
    QDir folder;
    ScreenshotPlan plan;
    /// The part of the work that falls to this process: of every `shares` scenes the one with number `share`.
    /// Without shares it divides the work among others.
    int share = 0;
    int shares = 0;

    /// Ends the program when it was asked for nonsense, or for help.
    static GalleryArguments of(const QCoreApplication &application);

    /// Whether the process works itself. May be asked before there is an application.
    static bool isWorker(int argc, char **argv);

    /// The arguments for the worker with that share.
    QStringList forWorker(int workerShare, int workerShares) const;
};

} // namespace quilmora::gallery
