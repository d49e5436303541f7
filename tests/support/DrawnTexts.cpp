#include "support/DrawnTexts.h"

#include "support/Drawing.h"

namespace quilmora::test {

QStringList drawnTexts(QWidget *widget)
{
    QStringList texts;
    const Drawing drawing{widget};
    for (const DrawnText &drawn : drawing.texts()) {
        texts.append(drawn.text);
    }
    return texts;
}

} // namespace quilmora::test
