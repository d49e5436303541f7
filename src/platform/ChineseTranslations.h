#pragma once

class QCoreApplication;

namespace quilmora {

/// Makes the platform's own texts (error messages, standard dialogs) Chinese whatever the user's locale is:
/// with the catalogue inside the program, else the system's. To be called on the main thread before the first
/// text is asked for; formats of numbers and dates stay the user's. Texts stay English where there is no
/// catalogue.
void installChineseTranslations(QCoreApplication &application);

} // namespace quilmora
