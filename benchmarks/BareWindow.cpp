// The least that a program with a window can be, for others to be measured against.

#include <QApplication>
#include <QLabel>

int main(int argc, char *argv[])
{
    const QApplication application{argc, argv};
    QLabel window{QStringLiteral("封面标题")};
    window.setAlignment(Qt::AlignCenter);
    window.resize(1000, 700);
    window.show();
    return QApplication::exec();
}
