#include "BenchWindow.h"

#include "generation/CoverGenerationFlow.h"
#include "screens/generate/GenerateCoverView.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QTest>

using namespace Qt::StringLiterals;

namespace quilmora::bench {

std::optional<QString> OneFileDialogs::chooseReferenceImage(QWidget * /*parent*/) { return path; }

std::optional<QString> OneFileDialogs::chooseCoverDestination(QWidget * /*parent*/, const QString & /*name*/)
{
    return std::nullopt;
}

BenchWindow::BenchWindow(const QString &serviceAddress)
    : m_database{m_folder.filePath(u"data"_s), m_folder.filePath(u"covers"_s)},
      m_storage{m_folder.filePath(u"covers"_s)}
{
    m_database.saveConfig(serviceAddress, u"key"_s, u"model"_s);
    m_screen = std::make_unique<GenerateCoverView>(
        CoverGenerationFlow::create(m_database, m_storage, m_generator), m_panels);
    m_screen->resize(1000, 1000);
    m_screen->show();
    if (!QTest::qWaitForWindowExposed(m_screen.get())) {
        qFatal("The window does not appear");
    }
}

BenchWindow::~BenchWindow() = default;

QWidget *BenchWindow::control(const QString &accessibleName)
{
    for (QWidget *widget : m_screen->findChildren<QWidget *>()) {
        if (widget->accessibleName() == accessibleName && widget->isVisible() &&
            widget->focusPolicy() != Qt::NoFocus) {
            return widget;
        }
    }
    qFatal("No control %s", qUtf8Printable(accessibleName));
}

void BenchWindow::typeTitle(const QString &title)
{
    qobject_cast<QLineEdit *>(control(u"视频封面标题文本"_s))->setText(title);
}

void BenchWindow::pickFace(const QString &path) { pick(u"人脸形象（必填）"_s, path); }

void BenchWindow::pickStyle(const QString &path) { pick(u"风格参考（上传示例封面，非必填）"_s, path); }

void BenchWindow::pick(const QString &accessibleName, const QString &path)
{
    m_panels.path = path;
    qobject_cast<QAbstractButton *>(control(accessibleName))->click();
}

} // namespace quilmora::bench
