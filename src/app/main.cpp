#include "app/QuilmoraApp.h"
#include "platform/PromptEnd.h"

int main(int argc, char *argv[])
{
    quilmora::QuilmoraApp application{argc, argv};
    application.openMainWindow();
    const int status = quilmora::QuilmoraApp::exec();
    quilmora::endWithin(std::chrono::seconds{2}, status);
    return status;
}
