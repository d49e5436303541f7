# Headers that are compiled once for many sources. Those that most sources need and no more: with all of Qt in them they
# take longer to read in than they save.
set(quilmora_core_headers
  <QByteArray> <QDateTime> <QDir> <QFile> <QFileInfo> <QHash> <QImage> <QList> <QObject> <QString> <QStringList>
  <algorithm> <chrono> <functional> <memory> <optional> <utility>)
set(quilmora_widget_headers
  ${quilmora_core_headers}
  <QAbstractButton> <QApplication> <QBoxLayout> <QFontMetrics> <QLabel> <QPainter> <QPainterPath> <QWidget>)
set(quilmora_core_test_headers ${quilmora_core_headers} <QSignalSpy> <QTest>)
set(quilmora_widget_test_headers ${quilmora_widget_headers} <QSignalSpy> <QTest>)
