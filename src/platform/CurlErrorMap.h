#pragma once

#include <QString>

#include <curl/curl.h>

// The error numbers both transfer controls give their callers.
namespace ControlError {
constexpr long Protocol = 20142;       // the server answered with an error reply
constexpr long HttpStatus = 20152;     // the web server answered with an error status
constexpr long DataConnection = 20302; // the data connection failed in the mode set
constexpr long NetworkDown = 25050;
constexpr long Refused = 25061;        // the host refused the connection
constexpr long TimedOut = 25063;       // no reply, or no byte moved, within the time-out
constexpr long NoConnection = 25066;
constexpr long HostNotFound = 26002;
constexpr long ProxyNotFound = 26005;
constexpr long LoginRefused = 530;
constexpr long Aborted = 20144;        // the caller called Abort during the call
constexpr long Busy = 20101;           // a call came while another was running
constexpr long LocalFile = 20145;      // the local file could not be opened
// TLS: the certificate is not trusted (system store, TlsCaFile or pin),
// its key is not the one pinned, or the server refused TLS altogether.
constexpr long CertificateUntrusted = 20160;
constexpr long CertificateChanged = 20161;
constexpr long TlsRefused = 20162;
// SFTP: the server's host key is in no file of trusted keys, or differs
// from the key trusted for the server.
constexpr long HostKeyUnknown = 20163;
constexpr long HostKeyChanged = 20164;
// The firewall refused: a password, a tunnel, a SOCKS request, or active
// mode, which no proxy carries. The description says which.
constexpr long FirewallRefused = 20165;
} // namespace ControlError

// Maps the network-level failures of libcurl, which both controls share.
class CurlErrorMap
{
public:
    // The number for a failure to reach a host, or 0 when `code` is not one.
    static long networkError(CURLcode code, long osErrno);
    // A description for it: libcurl's detail when it gave one.
    static QString describe(CURLcode code, const char *detail);
};
