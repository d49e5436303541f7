#pragma once

#include <QStringList>

/// Texts of the window by which several tests find or check something.
namespace quilmora::test::texts {

// The form.
inline const QString title = QStringLiteral("视频封面标题文本");
inline const QString titleHint = QStringLiteral("推荐不超过16个汉字，以保证设计效果");
inline const QString scene = QStringLiteral("背景场景");
inline const QString sceneHint = QStringLiteral("输入封面背景图中体现的元素");
inline const QString customExpression = QStringLiteral("请输入自定义表情描述");
inline const QString facePhoto = QStringLiteral("人脸形象（必填）");
inline const QString stylePicture = QStringLiteral("风格参考（上传示例封面，非必填）");
inline const QString upload = QStringLiteral("点击上传");
inline const QString remove = QStringLiteral("移除");
inline const QString advancedOptions = QStringLiteral("高级选项");
inline const QString instructions =
    QStringLiteral("自定义风格指令（如\"使用蓝金配色\"、\"更戏剧化\"、\"保留原来的穿着\"）");
inline const QString start = QStringLiteral("开始生成封面");
inline const QStringList steps{QStringLiteral("选择尺寸"), QStringLiteral("填写封面内容"),
                               QStringLiteral("选择表情"), QStringLiteral("上传照片")};

// What comes of it.
inline const QString generating = QStringLiteral("正在生成封面...");
inline const QString generatingHint = QStringLiteral("请稍候，火山引擎正在生成中");
inline const QString succeeded = QStringLiteral("生成成功");
inline const QString generatedCover = QStringLiteral("生成的封面");
inline const QString failed = QStringLiteral("生成失败");
inline const QString errorMessage = QStringLiteral("错误信息");
inline const QString back = QStringLiteral("返回表单");
inline const QString savePicture = QStringLiteral("保存图片");

// The history and its preview.
inline const QString history = QStringLiteral("已生成列表");
inline const QString refresh = QStringLiteral("刷新");
inline const QString noCovers = QStringLiteral("暂无生成记录");
inline const QString noCoversHint = QStringLiteral("前往「生成封面」开始创作吧");
inline const QString cover = QStringLiteral("封面");
inline const QString close = QStringLiteral("关闭");
inline const QString closePreview = QStringLiteral("关闭预览");

// The settings.
inline const QString apiURL = QStringLiteral("API URL");
inline const QString apiKey = QStringLiteral("API Key");
inline const QString modelID = QStringLiteral("Model ID");
inline const QStringList settings{apiURL, apiKey, modelID};
inline const QString settingsHeading = QStringLiteral("火山引擎图片生成");
inline const QString saveSettings = QStringLiteral("保存设置");
inline const QString saved = QStringLiteral("已保存");
inline const QString savedMessage = QStringLiteral("火山引擎配置已成功保存");
inline const QString confirm = QStringLiteral("好的");

} // namespace quilmora::test::texts
