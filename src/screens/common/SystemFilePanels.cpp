#include "screens/common/SystemFilePanels.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
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

std::optional<QString> run(QFileDialog &panel, QString &folder)
{
    panel.setDirectory(folder);
    panel.setOption(QFileDialog::HideNameFilterDetails);
    if (panel.exec() != QDialog::Accepted || panel.selectedFiles().isEmpty()) {
        return std::nullopt;
    }
    const QString path = panel.selectedFiles().constFirst();
    folder = QFileInfo{path}.path();
    return path;
}

/// Asks the question that the panel could not ask, because it did not know of the added ending.
bool confirmReplacing(QWidget *parent, const QString &path)
{
    QMessageBox question{QMessageBox::Warning,
                         {},
                         u"“%1”已存在。要替换它吗？"_s.arg(QFileInfo{path}.fileName()),
                         QMessageBox::NoButton,
                         parent->window()};
    question.setTextFormat(Qt::PlainText);
    const QAbstractButton *replace = question.addButton(u"替换"_s, QMessageBox::DestructiveRole);
    question.addButton(u"取消"_s, QMessageBox::RejectRole);
    question.exec();
    return question.clickedButton() == replace;
}

} // namespace

SystemFilePanels::SystemFilePanels()
    : folder{QStandardPaths::writableLocation(QStandardPaths::PicturesLocation)}
{
    if (!QFileInfo{folder}.isDir()) {
        folder = QStandardPaths::writableLocation(QStandardPaths::HomeLocation);
    }
}

std::optional<QString> SystemFilePanels::chooseReferenceImage(QWidget *parent)
{
    QFileDialog panel{parent->window(), u"选择图片"_s};
    panel.setFileMode(QFileDialog::ExistingFile);
    panel.setNameFilter(referenceFilter());
    return run(panel, folder);
}

std::optional<QString> SystemFilePanels::chooseCoverDestination(QWidget *parent, const QString &proposedName)
{
    QFileDialog panel{parent->window(), u"保存封面图片"_s};
    panel.setAcceptMode(QFileDialog::AcceptSave);
    panel.setFileMode(QFileDialog::AnyFile);
    panel.setNameFilter(u"PNG 图片 (*.png *.PNG)"_s);
    panel.setDefaultSuffix(u"png"_s);
    panel.selectFile(proposedName);
    std::optional<QString> path = run(panel, folder);
    if (path && !path->endsWith(u".png"_s, Qt::CaseInsensitive)) {
        *path += u".png"_s;
        if (QFileInfo::exists(*path) && !confirmReplacing(parent, *path)) {
            return std::nullopt;
        }
    }
    return path;
}

} // namespace quilmora
