#pragma once

class QCoreApplication;

namespace quilmora {

/// Makes Qt's own texts (error messages, standard dialogs) Chinese whatever the user's locale is, with the
/// catalog in the resources, else the system's, else only in part. Formats of numbers and dates stay the
/// user's. To be called on the main thread before the first text is translated.
void installChineseTranslations(QCoreApplication &application);

} // namespace quilmora
