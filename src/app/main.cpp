#include "app/QuilmoraApp.h"

int main(int argc, char *argv[])
{
    quilmora::QuilmoraApp application{argc, argv};
    application.openMainWindow();
    return quilmora::QuilmoraApp::exec();
}
