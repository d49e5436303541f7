#pragma once

#include "screens/common/LogoImage.h"
#include "screens/help/Toast.h"

#include <QString>

namespace quilmora
{

/// What the help screen says, and how.
struct HelpContents {
    QString version; ///< "1.0.0"
    QString email;
    QString website;
    LogoFiles logo{};
    std::chrono::milliseconds toastStay = Toast::usualStay;

    /// The version, and the addresses of whoever publishes the program, that it was built with.
    static HelpContents ofThisBuild();
};

} // namespace quilmora
