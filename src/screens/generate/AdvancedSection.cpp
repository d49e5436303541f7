#include "screens/generate/AdvancedSection.h"

#include "screens/common/ReadingOrder.h"
#include "screens/common/TextEditor.h"
#include "screens/common/TextLabel.h"
#include "screens/generate/DisclosureHeader.h"

#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

constexpr int editorHeight = 80;

} // namespace

AdvancedSection::AdvancedSection(QWidget *parent)
    : QWidget{parent},
      header{new DisclosureHeader{u"gearshape"_s, u"高级选项"_s, true, this}},
      body{new QWidget{this}},
      editor{new TextEditor{13, body}}
{
    const QString label = u"自定义风格指令（如\"使用蓝金配色\"、\"更戏剧化\"、\"保留原来的穿着\"）"_s;
    auto *caption = new TextLabel{label, {13, QFont::Normal, ColorRole::tertiaryText}, body};
    caption->setWordWrap(true);
    editor->setAccessibleName(label);
    editor->setFixedHeight(editorHeight);
    connect(header, &DisclosureHeader::expandedChanged, body, &QWidget::setVisible);

    auto *bodyColumn = new QVBoxLayout{body};
    bodyColumn->setContentsMargins(0, 0, 0, 0);
    bodyColumn->setSpacing(8);
    bodyColumn->addWidget(caption);
    bodyColumn->addWidget(editor);
    readInLayoutOrder(*bodyColumn);

    auto *column = new QVBoxLayout{this};
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget(header);
    column->addWidget(body);
}

QString AdvancedSection::advancedText() const
{
    return editor->text();
}

} // namespace quilmora
