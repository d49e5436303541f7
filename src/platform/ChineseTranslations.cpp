#include "platform/ChineseTranslations.h"

#include "platform/FallbackTranslator.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

#include <memory>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

constexpr auto catalogueName = "qtbase_zh_CN.qm"_L1;

bool load(QTranslator &translator)
{
    return translator.load(catalogueName, u":/translations"_s) ||
           translator.load(catalogueName, QLibraryInfo::path(QLibraryInfo::TranslationsPath));
}

} // namespace

void installChineseTranslations(QCoreApplication &application)
{
    auto catalogue = std::make_unique<QTranslator>(&application);
    if (load(*catalogue)) {
        QCoreApplication::installTranslator(catalogue.release());
    }
    // The one installed last is asked first, so our own words go before the catalogue.
    auto *supplement = new FallbackTranslator{&application};
    QCoreApplication::installTranslator(supplement);
}

} // namespace quilmora
