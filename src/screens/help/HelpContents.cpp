#include "screens/help/HelpContents.h"

#include "screens/help/BuildTexts.h"

namespace quilmora
{

HelpContents HelpContents::ofThisBuild()
{
    return {.version = buildTexts::version.toString(),
            .email = buildTexts::supportEmail.toString(),
            .website = buildTexts::website.toString()};
}

} // namespace quilmora
