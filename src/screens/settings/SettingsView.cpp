#include "screens/settings/SettingsView.h"

#include "model/VolcengineConfig.h"
#include "store/DatabaseManager.h"
#include "ui/accessibility/Accessibility.h"
#include "ui/dialogs/AlertDialog.h"
#include "ui/theme/Measures.h"
#include "ui/theme/PixelSnapper.h"
#include "ui/theme/Shapes.h"
#include "ui/widgets/ActionButton.h"
#include "ui/widgets/LabeledField.h"
#include "ui/widgets/TextLabel.h"

#include <QPainter>
#include <QShowEvent>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

constexpr QMargins padding{measures::pagePadding, measures::headerPadding, measures::pagePadding,
                           measures::pagePadding};
constexpr int spacing = 12;
constexpr int titleBottomPadding = 4;
constexpr int cardPadding = 20;
constexpr int groupSpacing = 18;

/// For Latin texts. Of these hints fcitx5 and ibus obey only ImhHiddenText, which disables pinyin.
constexpr Qt::InputMethodHints latinHints =
    Qt::ImhHiddenText | Qt::ImhPreferLatin | Qt::ImhNoAutoUppercase | Qt::ImhNoPredictiveText;

class Card final : public QWidget
{
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter{this};
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(roundedRect(PixelSnapper{painter}.aligned(rect()), measures::sheetRadius),
                         themeColor(ColorRole::controlBackground));
    }
};

LabeledField *makeField(const QString &label, const QString &placeholder, const QString &hint,
                        bool isMasked = false)
{
    return new LabeledField{{label, placeholder, hint},
                            {.label = {13, QFont::Medium},
                             .fieldPixelSize = 12,
                             .hint = {11, QFont::Normal, ColorRole::secondaryText},
                             .isMasked = isMasked}};
}

} // namespace

SettingsView::SettingsView(DatabaseManager &database, QWidget *parent)
    : ScrollPage{parent},
      m_database{database},
      m_url{makeField(u"API URL"_s, VolcengineConfig::defaultURL(),
                      u"默认："_s + VolcengineConfig::defaultURL())},
      m_key{makeField(u"API Key"_s, u"Bearer 长效 API Key"_s,
                      u"请在火山方舟控制台「获取 API Key」页面创建长效 Key"_s, true)},
      m_model{makeField(u"Model ID"_s, VolcengineConfig::defaultModelID(),
                        u"如：doubao-seedream-4-0-250828、doubao-seedream-3-0-t2i-250415 等"_s)},
      m_validationError{new ErrorLine{13, content()}}
{
    m_url->field()->setInputMethodHints(latinHints | Qt::ImhUrlCharactersOnly);
    m_model->field()->setInputMethodHints(latinHints);
    auto *card = makeCard();
    // Created after the fields for the tab order.
    auto *save = new ActionButton{u"checkmark.circle.fill"_s,
                                  u"保存设置"_s,
                                  {ActionButton::Kind::prominent, 14, QFont::DemiBold, 6, {16, 6}},
                                  content()};
    connect(save, &ActionButton::clicked, this, &SettingsView::saveSettings);

    auto *column = new QVBoxLayout{content()};
    column->setContentsMargins(padding);
    column->setSpacing(spacing);
    column->addWidget(new PageTitle{u"功能设置"_s, content()});
    column->addSpacing(titleBottomPadding);
    column->addWidget(card);
    column->addWidget(m_validationError);
    column->addWidget(save, 0, Qt::AlignLeft);
    column->addStretch(1);
    readInLayoutOrder(*column);
}

QWidget *SettingsView::makeCard()
{
    auto *card = new Card{content()};
    auto *column = new QVBoxLayout{card};
    column->setContentsMargins(cardPadding, cardPadding, cardPadding, cardPadding);
    column->setSpacing(groupSpacing);
    auto *header = new QVBoxLayout;
    header->setSpacing(4);
    header->addWidget(new TextLabel{u"火山引擎图片生成"_s, {16, QFont::DemiBold}, card});
    header->addWidget(new TextLabel{
        u"调用接口：POST /api/v3/images/generations"_s, {11, QFont::Normal, ColorRole::secondaryText}, card});
    column->addLayout(header);
    for (LabeledField *field : {m_url, m_key, m_model}) {
        column->addWidget(field);
    }
    readInLayoutOrder(*column);
    return card;
}

void SettingsView::showEvent(QShowEvent *event)
{
    ScrollPage::showEvent(event);
    // Not when a minimized window is restored, which would discard the inputs.
    if (!event->spontaneous()) {
        load();
    }
}

void SettingsView::load()
{
    const VolcengineConfig config = m_database.getConfig();
    m_url->field()->setText(config.apiURL);
    m_key->field()->setText(config.apiKey);
    m_model->field()->setText(config.modelID);
    for (LabeledField *field : {m_url, m_key, m_model}) {
        field->field()->setCursorPosition(0);
    }
}

void SettingsView::saveSettings()
{
    m_validationError->setMessage({});
    const QString url = m_url->text().trimmed();
    const QString key = m_key->text().trimmed();
    const QString model = m_model->text().trimmed();
    if (url.isEmpty()) {
        refuse(u"请填写 API URL"_s, *m_url);
    } else if (key.isEmpty()) {
        refuse(u"请填写 API Key"_s, *m_key);
    } else if (model.isEmpty()) {
        refuse(u"请填写 Model ID"_s, *m_model);
    } else {
        m_database.saveConfig(url, key, model);
        AlertDialog::open(u"已保存"_s, u"火山引擎配置已成功保存"_s, u"好的"_s, this);
    }
}

void SettingsView::refuse(const QString &message, const LabeledField &missing)
{
    m_validationError->setMessage(message);
    missing.field()->setInvalid();
    missing.field()->setFocus();
}

} // namespace quilmora
