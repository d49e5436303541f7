#include "screens/common/SystemFilePanels.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSettings>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

/// Both cases of every ending: some panels tell them apart.
const QString &referenceFilter()
{
    static const QString filter = u"PNG、JPEG 图片 (*.png *.PNG *.jpg *.JPG *.jpeg *.JPEG *.jpe *.JPE)"_s;
    return filter;
}

QString withPngEnding(const QString &path)
{
    return path.endsWith(u".png"_s, Qt::CaseInsensitive) ? path : path + u".png"_s;
}

/// Asks the question that the panel could not ask, because it did not know of the added ending.
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

/// Puts the settings of Qt itself, which all its programs share, where there are none and none can be
/// written.
class SettingsOutOfReach
{
protected:
    SettingsOutOfReach() { withdraw(); }
    Q_DISABLE_COPY_MOVE(SettingsOutOfReach)
    ~SettingsOutOfReach() { giveBack(); }

    static void withdraw() { setFolder(u"/dev/null"_s); }
    void giveBack() const { setFolder(usualFolder); }

private:
    static void setFolder(const QString &path)
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, path);
    }

    const QString usualFolder = QFileInfo{QSettings{QSettings::UserScope, u"QtProject"_s}.fileName()}.path();
};

/// Qt's file dialog reads its settings when it is made and writes them, the last folder among them, when it
/// is deleted. Only then they are out of reach: desktops' plugins may read settings at any other time.
class FilePanel final : private SettingsOutOfReach, public QFileDialog
{
public:
    FilePanel(QWidget *parent, const QString &title, const QString &folder)
        : QFileDialog{parent, title, folder}
    {
        giveBack();
    }
    Q_DISABLE_COPY_MOVE(FilePanel)
    ~FilePanel() override { withdraw(); }
};

} // namespace

SystemFilePanels::SystemFilePanels()
    : folder{QStandardPaths::writableLocation(QStandardPaths::PicturesLocation)}
{
    if (!QFileInfo{folder}.isDir()) {
        folder = QStandardPaths::writableLocation(QStandardPaths::HomeLocation);
    }
}

QFileDialog *SystemFilePanels::makePanel(QWidget *asker, const QString &title)
{
    auto *panel = new FilePanel{asker->window(), title, folder};
    QObject::connect(asker, &QObject::destroyed, panel, &QDialog::reject);
    panel->setIconProvider(&kinds);
    panel->setOption(QFileDialog::HideNameFilterDetails);
    if (auto *name = panel->findChild<QLineEdit *>(u"fileNameEdit"_s)) {
        // While a screen reader runs, no window becomes active again after Return closes the panel below the
        // list of completions.
        name->setCompleter(nullptr);
    }
    return panel;
}

std::optional<QString> SystemFilePanels::run(QFileDialog *dialog)
{
    const QPointer<QFileDialog> panel{dialog};
    const int answer = panel->exec();
    if (panel.isNull()) {
        return std::nullopt;
    }
    const QStringList files = panel->selectedFiles();
    delete panel;
    if (answer != QDialog::Accepted || files.isEmpty()) {
        return std::nullopt;
    }
    folder = QFileInfo{files.constFirst()}.path();
    return files.constFirst();
}

std::optional<QString> SystemFilePanels::chooseReferenceImage(QWidget *parent)
{
    QFileDialog *panel = makePanel(parent, u"选择图片"_s);
    panel->setFileMode(QFileDialog::ExistingFile);
    panel->setNameFilter(referenceFilter());
    return run(panel);
}

std::optional<QString> SystemFilePanels::chooseCoverDestination(QWidget *parent, const QString &proposedName)
{
    const QPointer<QWidget> asker{parent};
    QString name = proposedName;
    while (asker != nullptr) {
        // It must not add the ending itself: some desktops' panels would do so after they have looked whether
        // the file exists. Each asks before it gives the name of one that does.
        QFileDialog *panel = makePanel(asker, u"保存封面图片"_s);
        panel->setAcceptMode(QFileDialog::AcceptSave);
        panel->setFileMode(QFileDialog::AnyFile);
        panel->setNameFilter(u"PNG 图片 (*.png *.PNG)"_s);
        panel->selectFile(name);
        const std::optional<QString> chosen = run(panel);
        if (!chosen) {
            break;
        }
        const QString path = withPngEnding(*chosen);
        if (path == *chosen || !QFileInfo::exists(path) || confirmReplacing(asker, path)) {
            return path;
        }
        name = QFileInfo{path}.fileName();
    }
    return std::nullopt;
}

} // namespace quilmora
