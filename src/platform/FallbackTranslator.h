#pragma once

#include <QTranslator>

namespace quilmora {

/// Chinese for those of the platform's texts that its own catalogue leaves in English (error messages,
/// panels) or has in a wording unfit for us (commands of text menus).
class FallbackTranslator final : public QTranslator
{
    Q_OBJECT

public:
    using QTranslator::QTranslator;

    /// Null for every text that is not among them.
    QString translate(const char *context, const char *sourceText, const char *disambiguation,
                      int n) const override;
    bool isEmpty() const override { return false; }
};

} // namespace quilmora
