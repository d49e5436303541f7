#include "screens/settings/SettingsView.h"

#include "model/VolcengineConfig.h"
#include "screens/common/ActionButton.h"
#include "screens/common/AlertPanel.h"
#include "screens/common/Card.h"
#include "screens/common/ErrorLine.h"
#include "screens/common/LabelledField.h"
#include "screens/common/PageTitle.h"
#include "screens/common/ReadingOrder.h"
#include "store/DatabaseManager.h"

#include <QShowEvent>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

constexpr QMargins padding{32, 24, 32, 32};
constexpr int spacing = 12;
constexpr int titleBottomPadding = 4;
constexpr int cardPadding = 20;
constexpr int groupSpacing = 18;

/// For texts of Latin letters. Of all hints fcitx5 and the plugin for ibus heed only that for hidden text: it
/// alone keeps a pinyin input method from composing.
constexpr Qt::InputMethodHints latinHints =
    Qt::ImhHiddenText | Qt::ImhPreferLatin | Qt::ImhNoAutoUppercase | Qt::ImhNoPredictiveText;

LabelledField *makeField(const QString &label, const QString &placeholder, const QString &hint,
                         bool isMasked = false)
{
    return new LabelledField{{label, placeholder, hint},
                             {.label = {13, QFont::Medium},
                              .fieldPixelSize = 12,
                              .hint = {11, QFont::Normal, ColorRole::secondaryText},
                              .isMasked = isMasked}};
}

} // namespace

SettingsView::SettingsView(DatabaseManager &store, QWidget *parent)
    : ScrollPage{parent},
      database{store},
      url{makeField(u"API URL"_s, VolcengineConfig::defaultURL(),
                    u"默认："_s + VolcengineConfig::defaultURL())},
      key{makeField(u"API Key"_s, u"Bearer 长效 API Key"_s,
                    u"请在火山方舟控制台「获取 API Key」页面创建长效 Key"_s, true)},
      model{makeField(u"Model ID"_s, VolcengineConfig::defaultModelID(),
                      u"如：doubao-seedream-4-0-250828、doubao-seedream-3-0-t2i-250415 等"_s)},
      validationError{new ErrorLine{13, content()}}
{
    url->field()->setInputMethodHints(latinHints | Qt::ImhUrlCharactersOnly);
    model->field()->setInputMethodHints(latinHints);
    auto *card = makeCard();
    // Made after the fields: the Tab key goes in the order of making.
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
    column->addWidget(validationError);
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
    for (LabelledField *field : {url, key, model}) {
        column->addWidget(field);
    }
    readInLayoutOrder(*column);
    return card;
}

void SettingsView::showEvent(QShowEvent *event)
{
    ScrollPage::showEvent(event);
    // Not when the window merely comes back from the dock: that would throw away what is being typed.
    if (!event->spontaneous()) {
        load();
    }
}

void SettingsView::load()
{
    const VolcengineConfig config = database.getConfig();
    url->field()->setText(config.apiURL);
    key->field()->setText(config.apiKey);
    model->field()->setText(config.modelID);
    for (LabelledField *field : {url, key, model}) {
        field->field()->setCursorPosition(0);
    }
}

void SettingsView::saveSettings()
{
    validationError->setMessage({});
    const QString trimmedUrl = url->text().trimmed();
    const QString trimmedKey = key->text().trimmed();
    const QString trimmedModel = model->text().trimmed();
    if (trimmedUrl.isEmpty()) {
        refuse(u"请填写 API URL"_s, *url);
    } else if (trimmedKey.isEmpty()) {
        refuse(u"请填写 API Key"_s, *key);
    } else if (trimmedModel.isEmpty()) {
        refuse(u"请填写 Model ID"_s, *model);
    } else {
        database.saveConfig(trimmedUrl, trimmedKey, trimmedModel);
        AlertPanel::open(u"已保存"_s, u"火山引擎配置已成功保存"_s, u"好的"_s, this);
    }
}

void SettingsView::refuse(const QString &message, const LabelledField &missing)
{
    validationError->setMessage(message);
    missing.field()->setInvalid();
    missing.field()->setFocus();
}

} // namespace quilmora
