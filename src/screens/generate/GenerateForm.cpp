#include "screens/generate/GenerateForm.h"

#include "generation/GenerationRequest.h"
#include "screens/generate/DisclosureHeader.h"
#include "screens/generate/FlowLayout.h"
#include "screens/generate/FormOptions.h"
#include "screens/generate/GenerateButton.h"
#include "screens/generate/UploadCard.h"
#include "ui/accessibility/Accessibility.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/Theme.h"
#include "ui/widgets/LabeledField.h"
#include "ui/widgets/TextEditor.h"

#include <QFontMetrics>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

constexpr int sectionSpacing = 24;
constexpr int stepSpacing = 12;
constexpr int sizeCardSpacing = 12;
constexpr int uploadCardSpacing = 16;
constexpr int advancedSpacing = 8;
constexpr int advancedEditorHeight = 80;
constexpr int buttonTopPadding = 4;

constexpr int discDiameter = 22;
constexpr int discSpacing = 8;

/// The header of a section: a numbered disc and the title.
class StepHeader final : public QWidget
{
public:
    StepHeader(int number, QString title, QWidget *parent)
        : QWidget{parent},
          m_number{number},
          m_title{std::move(title)}
    {
        setAccessibleRole(this, {QAccessible::StaticText});
        setAccessibleName(m_title);
        setFont(systemFont(14, QFont::DemiBold));
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    }

    QSize sizeHint() const override
    {
        const QFontMetrics metrics{font()};
        return {discDiameter + discSpacing + metrics.horizontalAdvance(m_title),
                std::max(discDiameter, metrics.height())};
    }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter{this};
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF disc{0, (height() - discDiameter) / 2.0, discDiameter, discDiameter};
        painter.setPen(Qt::NoPen);
        painter.setBrush(themeColor(ColorRole::step));
        painter.drawEllipse(disc);
        painter.setPen(themeColor(ColorRole::onAccent));
        painter.setFont(systemFont(12, QFont::Bold));
        painter.drawText(disc, Qt::AlignCenter, QString::number(m_number));
        painter.setPen(themeColor(ColorRole::primaryText));
        painter.setFont(font());
        painter.drawText(rect().adjusted(discDiameter + discSpacing, 0, 0, 0),
                         Qt::AlignLeft | Qt::AlignVCenter, m_title);
    }

private:
    const int m_number;
    const QString m_title;
};

/// Without margins.
QVBoxLayout *makeColumn(QWidget *widget, int spacing)
{
    auto *column = new QVBoxLayout{widget};
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(spacing);
    return column;
}

/// A section whose content goes into its layout.
QWidget *makeStep(int number, const QString &title, QWidget *parent)
{
    auto *section = new QWidget{parent};
    setAccessibleRole(section, {QAccessible::Grouping});
    section->setAccessibleName(title);
    makeColumn(section, stepSpacing)->addWidget(new StepHeader{number, title, section});
    return section;
}

LabeledField *makeField(const LabeledField::Texts &texts, QWidget *section)
{
    auto *field = new LabeledField{texts,
                                   {.label = {12, QFont::Normal, ColorRole::secondaryText},
                                    .fieldPixelSize = 13,
                                    .hint = {11, QFont::Normal, ColorRole::tertiaryText}},
                                   section};
    section->layout()->addWidget(field);
    return field;
}

QHBoxLayout *addRow(QWidget *section, int spacing)
{
    auto *row = new QHBoxLayout;
    row->setSpacing(spacing);
    static_cast<QVBoxLayout *>(section->layout())->addLayout(row);
    return row;
}

} // namespace

GenerateForm::GenerateForm(FileDialogs &dialogs, QWidget *parent)
    : QWidget{parent},
      m_size{CoverSize::presets().constFirst()},
      m_emotion{Emotion::presets().constFirst()}
{
    auto *column = makeColumn(this, sectionSpacing);
    column->addWidget(makeSizeSection());
    column->addWidget(makeContentSection());
    column->addWidget(makeEmotionSection());
    column->addWidget(makeUploadSection(dialogs));
    column->addWidget(makeAdvancedSection());
    m_button = new GenerateButton{this};
    auto *buttonRow = new QVBoxLayout;
    buttonRow->setContentsMargins(0, buttonTopPadding, 0, 0);
    buttonRow->addWidget(m_button);
    column->addLayout(buttonRow);

    connect(m_title->field(), &TextField::shownTextChanged, this, &GenerateForm::updateButton);
    connect(m_button, &PaintedButton::clicked, this, &GenerateForm::requestGeneration);
    updateButton();
}

QWidget *GenerateForm::makeSizeSection()
{
    QWidget *section = makeStep(1, u"选择尺寸"_s, this);
    QHBoxLayout *row = addRow(section, sizeCardSpacing);
    for (const CoverSize &size : CoverSize::presets()) {
        auto *card = new SizeCard{size, section};
        card->setChecked(size == m_size);
        connect(card, &SizeCard::chosen, this, [this, size] { m_size = size; });
        row->addWidget(card, 1);
    }
    return section;
}

QWidget *GenerateForm::makeContentSection()
{
    QWidget *section = makeStep(2, u"填写封面内容"_s, this);
    m_title = makeField({u"视频封面标题文本"_s, u"我靠这个赚了100万 / 这个秘密改变了一切"_s,
                         u"推荐不超过16个汉字，以保证设计效果"_s},
                        section);
    m_scene = makeField(
        {u"背景场景"_s, u"豪华办公室 / 未来科技感 / 金色财富主题"_s, u"输入封面背景图中体现的元素"_s},
        section);
    return section;
}

QWidget *GenerateForm::makeEmotionSection()
{
    QWidget *section = makeStep(3, u"选择表情"_s, this);
    auto *chips = new QWidget{section};
    auto *flow = new FlowLayoutHost{chips};
    for (const Emotion &emotion : Emotion::presets()) {
        auto *chip = new EmotionChip{emotion.name, chips};
        chip->setChecked(emotion == m_emotion);
        connect(chip, &EmotionChip::chosen, this, [this, emotion] { selectEmotion(emotion); });
        flow->addWidget(chip);
    }
    // Created after the chips for the tab order.
    const QString placeholder = u"请输入自定义表情描述"_s;
    m_customEmotion = makeTextField(placeholder, placeholder, 13, section);
    section->layout()->addWidget(chips);
    section->layout()->addWidget(m_customEmotion);
    selectEmotion(m_emotion);
    return section;
}

QWidget *GenerateForm::makeUploadSection(FileDialogs &dialogs)
{
    QWidget *section = makeStep(4, u"上传照片"_s, this);
    const QString icon = u"square.and.arrow.up"_s;
    m_face = new UploadCard{u"人脸形象（必填）"_s, icon, dialogs, section};
    m_style = new UploadCard{u"风格参考（上传示例封面，非必填）"_s, icon, dialogs, section};
    QHBoxLayout *row = addRow(section, uploadCardSpacing);
    row->addWidget(m_face, 1);
    row->addWidget(m_style, 1);
    return section;
}

/// Its text counts while it is folded too.
QWidget *GenerateForm::makeAdvancedSection()
{
    auto *section = new QWidget{this};
    auto *header = new DisclosureHeader{u"gearshape"_s, u"高级选项"_s, true, section};
    auto *body = new QWidget{section};
    m_advanced = new TextEditor{13, body};
    const QString label = u"自定义风格指令（如\"使用蓝金配色\"、\"更戏剧化\"、\"保留原来的穿着\"）"_s;
    auto *caption = new TextLabel{label, {13, QFont::Normal, ColorRole::tertiaryText}, body};
    caption->setWordWrap(true);
    m_advanced->setAccessibleName(label);
    m_advanced->setFixedHeight(advancedEditorHeight);
    connect(header, &DisclosureHeader::expandedChanged, body, &QWidget::setVisible);

    QVBoxLayout *bodyColumn = makeColumn(body, advancedSpacing);
    bodyColumn->addWidget(caption);
    bodyColumn->addWidget(m_advanced);
    readInLayoutOrder(*bodyColumn);

    QVBoxLayout *column = makeColumn(section, advancedSpacing);
    column->addWidget(header);
    column->addWidget(body);
    return section;
}

CoverInputs GenerateForm::inputs() const
{
    return {.selectedSize = m_size,
            .titleText = m_title->text(),
            .sceneText = m_scene->text(),
            .selectedEmotion = m_emotion,
            .customEmotion = m_customEmotion->text(),
            .faceImage = m_face->image(),
            .styleImage = m_style->image(),
            .advancedText = m_advanced->text()};
}

void GenerateForm::focusTitle() { m_title->field()->setFocus(); }

void GenerateForm::selectEmotion(const Emotion &emotion)
{
    m_emotion = emotion;
    m_customEmotion->setVisible(emotion.isCustom());
}

void GenerateForm::updateButton()
{
    m_button->setEnabled(!withoutOuterBlanks(m_title->field()->shownText()).isEmpty());
}

void GenerateForm::requestGeneration()
{
    // The button commits the preedit text, but an input method may discard it instead.
    if (!withoutOuterBlanks(m_title->text()).isEmpty()) {
        Q_EMIT generateRequested();
    }
}

} // namespace quilmora
