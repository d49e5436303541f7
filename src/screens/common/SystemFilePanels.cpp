#include "screens/common/SystemFilePanels.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
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

} // namespace

SystemFilePanels::SystemFilePanels()
    : folder{QStandardPaths::writableLocation(QStandardPaths::PicturesLocation)}
{
    if (!QFileInfo{folder}.isDir()) {
        folder = QStandardPaths::writableLocation(QStandardPaths::HomeLocation);
    }
}

std::optional<QString> SystemFilePanels::run(QFileDialog *dialog, const QWidget *asker)
{
    const QPointer<QFileDialog> panel{dialog};
    QObject::connect(asker, &QObject::destroyed, panel.data(), &QDialog::reject);
    panel->setIconProvider(&kinds);
    panel->setDirectory(folder);
    panel->setOption(QFileDialog::HideNameFilterDetails);
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
    auto *panel = new QFileDialog{parent->window(), u"选择图片"_s};
    panel->setFileMode(QFileDialog::ExistingFile);
    panel->setNameFilter(referenceFilter());
    return run(panel, parent);
}

std::optional<QString> SystemFilePanels::chooseCoverDestination(QWidget *parent, const QString &proposedName)
{
    auto *panel = new QFileDialog{parent->window(), u"保存封面图片"_s};
    panel->setAcceptMode(QFileDialog::AcceptSave);
    panel->setFileMode(QFileDialog::AnyFile);
    panel->setNameFilter(u"PNG 图片 (*.png *.PNG)"_s);
    panel->setDefaultSuffix(u"png"_s);
    panel->selectFile(proposedName);
    std::optional<QString> path = run(panel, parent);
    if (path && !path->endsWith(u".png"_s, Qt::CaseInsensitive)) {
        *path += u".png"_s;
        if (QFileInfo::exists(*path) && !confirmReplacing(parent, *path)) {
            return std::nullopt;
        }
    }
    return path;
}

} // namespace quilmora
