#include "generation/GenerationResult.h"

using namespace Qt::StringLiterals;

namespace quilmora {

GenError GenError::serverError(const QString &message)
{
    GenError error{Case::serverError};
    error.m_message = message;
    return error;
}

QString GenError::errorDescription() const
{
    switch (m_errorCase) {
    case Case::invalidURL:
        return u"API URL 无效，请在「功能设置」中配置"_s;
    case Case::invalidAPIKey:
        return u"API Key 无效，请在「功能设置」中配置"_s;
    case Case::invalidModelID:
        return u"Model ID 无效，请在「功能设置」中配置"_s;
    case Case::noData:
        return u"未收到响应数据"_s;
    case Case::parseFailed:
        return u"无法解析图片数据"_s;
    case Case::serverError:
        return m_message;
    }
    Q_UNREACHABLE();
}

QString localizedDescription(const GenerationResult &result)
{
    if (const auto *error = std::get_if<GenError>(&result)) {
        return error->errorDescription();
    }
    if (const auto *error = std::get_if<TransportError>(&result)) {
        return error->description;
    }
    return {};
}

} // namespace quilmora
