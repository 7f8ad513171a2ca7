// Ownership of what GIO hands out.

#pragma once

#include <QString>

#include <gio/gio.h>
#include <memory>

struct UnrefObject
{
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename T> using GioPointer = std::unique_ptr<T, UnrefObject>;

// Receives the reason of a failure: pass `receive()` where GIO wants a GError **.
class GioError final
{
public:
    GioError() = default;
    ~GioError() { g_clear_error(&_error); }
    Q_DISABLE_COPY_MOVE(GioError)

    GError **receive() { return &_error; }
    bool matches(GQuark domain, int code) const { return g_error_matches(_error, domain, code); }
    bool isSet() const { return _error != nullptr; }
    QString text() const
    {
        return _error != nullptr ? QString::fromUtf8(_error->message) : QString();
    }

private:
    GError *_error = nullptr;
};
