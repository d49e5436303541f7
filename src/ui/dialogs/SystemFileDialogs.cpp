#include "ui/dialogs/SystemFileDialogs.h"

#include <QFileDialog>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSettings>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

/// Some dialogs are case-sensitive.
const QString &referenceFilter()
{
    static const QString filter = u"PNG、JPEG 图片 (*.png *.PNG *.jpg *.JPG *.jpeg *.JPEG *.jpe *.JPE)"_s;
    return filter;
}

QString withPngSuffix(const QString &path)
{
    return path.endsWith(u".png"_s, Qt::CaseInsensitive) ? path : path + u".png"_s;
}

/// The dialog could not ask, since the suffix was added later.
bool confirmReplacing(QWidget *parent, const QString &path)
{
    const QPointer<QMessageBox> question =
        new QMessageBox{QMessageBox::Warning,
                        {},
                        u"“%1”已存在。要替换它吗？"_s.arg(QFileInfo{path}.fileName()),
                        QMessageBox::NoButton,
                        parent->window()};
    QObject::connect(parent, &QObject::destroyed, question.data(), &QDialog::reject);
    question->setTextFormat(Qt::PlainText);
    const QAbstractButton *replace = question->addButton(u"替换"_s, QMessageBox::DestructiveRole);
    question->addButton(u"取消"_s, QMessageBox::RejectRole);
    question->exec();
    const bool confirmed = question != nullptr && question->clickedButton() == replace;
    delete question;
    return confirmed;
}

/// Hides the settings that all Qt programs share: none can be read and none written.
class HiddenQtSettings
{
protected:
    HiddenQtSettings() { hideSettings(); }
    Q_DISABLE_COPY_MOVE(HiddenQtSettings)
    ~HiddenQtSettings() { restoreSettings(); }

    static void hideSettings() { setFolder(u"/dev/null"_s); }
    void restoreSettings() const { setFolder(m_usualFolder); }

private:
    static void setFolder(const QString &path)
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, path);
    }

    const QString m_usualFolder =
        QFileInfo{QSettings{QSettings::UserScope, u"QtProject"_s}.fileName()}.path();
};

/// QFileDialog reads its settings in the constructor and writes them, with the last folder, in the
/// destructor. Only then they are hidden, since plugins of desktops may read settings at any other time.
class PrivateFileDialog final : private HiddenQtSettings, public QFileDialog
{
public:
    PrivateFileDialog(QWidget *parent, const QString &title, const QString &folder)
        : QFileDialog{parent, title, folder}
    {
        restoreSettings();
    }
    ~PrivateFileDialog() override { hideSettings(); }
};

/// Names file types in Chinese in Qt's own file dialog; Qt takes them from a catalogue in the language of the
/// desktop.
class FileTypeNames final : public QFileIconProvider
{
public:
    QString type(const QFileInfo &file) const override
    {
        // The names of folders and the like are translated.
        if (!file.isFile()) {
            return QFileIconProvider::type(file);
        }
        const QString suffix = file.suffix().toUpper();
        if (suffix == u"PNG"_s) {
            return u"PNG 图片"_s;
        }
        if (suffix == u"JPG"_s || suffix == u"JPEG"_s || suffix == u"JPE"_s) {
            return u"JPEG 图片"_s;
        }
        return suffix.isEmpty() ? u"文件"_s : QString{suffix + u" 文件"_s};
    }
};

} // namespace

SystemFileDialogs::SystemFileDialogs()
    : m_fileTypes{std::make_unique<FileTypeNames>()},
      m_folder{QStandardPaths::writableLocation(QStandardPaths::PicturesLocation)}
{
    if (!QFileInfo{m_folder}.isDir()) {
        m_folder = QStandardPaths::writableLocation(QStandardPaths::HomeLocation);
    }
}

QFileDialog *SystemFileDialogs::makeDialog(QWidget *owner, const QString &title)
{
    auto *dialog = new PrivateFileDialog{owner->window(), title, m_folder};
    QObject::connect(owner, &QObject::destroyed, dialog, &QDialog::reject);
    dialog->setIconProvider(m_fileTypes.get());
    dialog->setOption(QFileDialog::HideNameFilterDetails);
    if (auto *name = dialog->findChild<QLineEdit *>(u"fileNameEdit"_s)) {
        // With a screen reader, no window becomes active again when Return closes the dialog below the popup
        // of completions.
        name->setCompleter(nullptr);
    }
    return dialog;
}

std::optional<QString> SystemFileDialogs::run(QFileDialog *newDialog)
{
    const QPointer<QFileDialog> dialog{newDialog};
    const int answer = dialog->exec();
    if (dialog.isNull()) {
        return std::nullopt;
    }
    const QStringList files = dialog->selectedFiles();
    delete dialog;
    if (answer != QDialog::Accepted || files.isEmpty()) {
        return std::nullopt;
    }
    m_folder = QFileInfo{files.constFirst()}.path();
    return files.constFirst();
}

std::optional<QString> SystemFileDialogs::chooseReferenceImage(QWidget *parent)
{
    QFileDialog *dialog = makeDialog(parent, u"选择图片"_s);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setNameFilter(referenceFilter());
    return run(dialog);
}

std::optional<QString> SystemFileDialogs::chooseCoverDestination(QWidget *parent, const QString &proposedName)
{
    const QPointer<QWidget> owner{parent};
    QString name = proposedName;
    while (owner != nullptr) {
        // Without a default suffix: the dialogs of some desktops would add it after the check for an existing
        // file. Each asks before it returns the name of one.
        QFileDialog *dialog = makeDialog(owner, u"保存封面图片"_s);
        dialog->setAcceptMode(QFileDialog::AcceptSave);
        dialog->setFileMode(QFileDialog::AnyFile);
        dialog->setNameFilter(u"PNG 图片 (*.png *.PNG)"_s);
        dialog->selectFile(name);
        const std::optional<QString> chosen = run(dialog);
        if (!chosen) {
            break;
        }
        const QString path = withPngSuffix(*chosen);
        if (path == *chosen || !QFileInfo::exists(path) || confirmReplacing(owner, path)) {
            return path;
        }
        name = QFileInfo{path}.fileName();
    }
    return std::nullopt;
}

} // namespace quilmora
