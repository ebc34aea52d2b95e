#include "CurlErrorMap.h"

#include <cerrno>

long CurlErrorMap::networkError(CURLcode code, long osErrno)
{
    switch (code) {
    case CURLE_COULDNT_RESOLVE_HOST:
        return ControlError::HostNotFound;
    case CURLE_COULDNT_RESOLVE_PROXY:
        return ControlError::ProxyNotFound;
    case CURLE_OPERATION_TIMEDOUT:
        return ControlError::TimedOut;
    case CURLE_COULDNT_CONNECT:
        if (osErrno == ENETDOWN || osErrno == ENETUNREACH)
            return ControlError::NetworkDown;
        if (osErrno == EHOSTUNREACH)
            return ControlError::NoConnection;
        return ControlError::Refused;
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_GOT_NOTHING:
        return ControlError::NoConnection;
    default:
        return 0;
    }
}

QString CurlErrorMap::describe(CURLcode code, const char *detail)
{
    if (detail && *detail)
        return QString::fromUtf8(detail);
    return QString::fromUtf8(curl_easy_strerror(code));
}
