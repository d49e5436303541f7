#include "platform/ChineseTranslations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

/// Texts that Qt's catalog lacks, and other words for the commands of text menus.
struct Entry {
    std::string_view context;
    std::string_view source;
    QStringView chinese;
};

constexpr std::array entries{
    Entry{"QAbstractFileIconProvider", "Alias", u"替身"},
    Entry{"QAbstractFileIconProvider", "Drive", u"驱动器"},
    Entry{"QAbstractFileIconProvider", "Folder", u"文件夹"},
    Entry{"QAbstractFileIconProvider", "Shortcut", u"快捷方式"},
    Entry{"QAbstractFileIconProvider", "Unknown", u"未知"},
    Entry{"QFile", "Cannot create %1 for output: %2", u"无法创建 %1 进行输出：%2"},
    Entry{"QFile", "Failure to write block: %1", u"写入块失败：%1"},
    Entry{"QHttp", "Data downloaded is too large to store", u"下载的数据太大，无法保存"},
    Entry{"QHttp", "Decompression failed: %1", u"解压失败：%1"},
    Entry{"QHttp", "Failed to initialize decompression: %1", u"无法开始解压：%1"},
    Entry{"QHttp", "Failed to initialize the compression decoder.", u"无法初始化解压程序。"},
    Entry{"QHttp",
          "The decompressed output exceeds the limits specified by "
          "QNetworkRequest::decompressedSafetyCheckThreshold()",
          u"解压后的数据超出安全限制"},
    Entry{"QHttp", "Unsupported content encoding: %1", u"不支持的内容编码：%1"},
    // Qt's texts end with a mnemonic in brackets, which screen readers would read.
    Entry{"QLineEdit", "&Undo", u"撤消"},
    Entry{"QLineEdit", "&Redo", u"重做"},
    Entry{"QLineEdit", "Cu&t", u"剪切"},
    Entry{"QLineEdit", "&Copy", u"复制"},
    Entry{"QLineEdit", "&Paste", u"粘贴"},
    Entry{"QSslSocket", "Attempted to use an unsupported protocol.", u"试图使用不受支持的协议。"},
    Entry{"QSslSocket", "Cannot provide a certificate with no key", u"无法提供没有密钥的证书"},
    Entry{"QSslSocket", "TLS certificate unexpectedly changed during renegotiation!",
          u"重新协商时 TLS 证书意外改变！"},
    Entry{"QWidgetTextControl", "&Undo", u"撤消"},
    Entry{"QWidgetTextControl", "&Redo", u"重做"},
    Entry{"QWidgetTextControl", "Cu&t", u"剪切"},
    Entry{"QWidgetTextControl", "&Copy", u"复制"},
    Entry{"QWidgetTextControl", "&Paste", u"粘贴"},
};

class FallbackTranslator final : public QTranslator
{
public:
    using QTranslator::QTranslator;

    bool isEmpty() const override { return false; }

    QString translate(const char *context, const char *sourceText, const char * /*disambiguation*/,
                      int /*n*/) const override
    {
        if (context == nullptr || sourceText == nullptr) {
            return {};
        }
        const auto *const entry = std::find_if(entries.begin(), entries.end(), [=](const Entry &candidate) {
            return candidate.context == context && candidate.source == sourceText;
        });
        return entry == entries.end() ? QString{} : entry->chinese.toString();
    }
};

} // namespace

void installChineseTranslations(QCoreApplication &application)
{
    const QString name = u"qtbase_zh_CN.qm"_s;
    auto catalog = std::make_unique<QTranslator>(&application);
    if (catalog->load(name, u":/translations"_s) ||
        catalog->load(name, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(catalog.release());
    }
    // Qt uses the translator installed last first.
    QCoreApplication::installTranslator(new FallbackTranslator{&application});
}

} // namespace quilmora
