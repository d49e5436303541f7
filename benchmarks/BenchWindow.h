#pragma once

#include "generation/ImageGeneratorService.h"
#include "store/DatabaseManager.h"
#include "store/ImageStorageService.h"
#include "ui/dialogs/FileDialogs.h"

#include <QTemporaryDir>
#include <QWidget>

#include <memory>

namespace quilmora::bench {

/// Answers every open panel with one file.
class OneFileDialogs final : public FileDialogs
{
public:
    std::optional<QString> chooseReferenceImage(QWidget *parent) override;
    std::optional<QString> chooseCoverDestination(QWidget *parent, const QString &proposedName) override;

    QString path;
};

/// The generate screen in a window, on stores of its own.
class BenchWindow final
{
public:
    /// A service that refuses connections: nothing listens on the discard port.
    BenchWindow() : BenchWindow{QStringLiteral("http://127.0.0.1:9/")} {}
    explicit BenchWindow(const QString &serviceAddress);
    Q_DISABLE_COPY_MOVE(BenchWindow)
    ~BenchWindow();

    QWidget &window() { return *m_screen; }

    /// The visible control of that accessible name.
    QWidget *control(const QString &accessibleName);

    void typeTitle(const QString &title);
    void pickFace(const QString &path);
    void pickStyle(const QString &path);

private:
    void pick(const QString &accessibleName, const QString &path);

    QTemporaryDir m_folder;
    DatabaseManager m_database;
    ImageStorageService m_storage;
    ImageGeneratorService m_generator;
    OneFileDialogs m_panels;
    std::unique_ptr<QWidget> m_screen;
};

} // namespace quilmora::bench
