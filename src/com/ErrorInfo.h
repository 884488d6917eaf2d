// How a RaisedError crosses to a client: a failed HRESULT whose code a script host reads back
// as the same Number, and an IErrorInfo with Source and Description. Guard() is the one place
// where C++ exceptions stop: every COM entry point runs its body through it.
#pragma once
#include "frame/RaisedError.h"

#include <windows.h>

#include <new>

namespace orbex::com {

// The HRESULT for a Number: negative numbers are HRESULTs already; 0 to 65535 travel in the
// code field of the control facility (0x800A0000 + n), which script hosts read back as n.
HRESULT HresultFor(Long number);

// Sets the thread's error info for the failure and returns its HRESULT. It allocates nothing of
// its own, so it cannot throw from the catch handler of a noexcept guard.
HRESULT Report(const RaisedError& error, REFIID interfaceId) noexcept;

// Sets the thread's error info for a failure that is not the member's own (E_OUTOFMEMORY,
// E_UNEXPECTED), in the environment's words, and returns it.
HRESULT ReportUnexpected(HRESULT failure, REFIID interfaceId) noexcept;

// Runs `body` and turns whatever it throws into an HRESULT with error info.
template <class Body>
HRESULT Guard(REFIID interfaceId, Body&& body) noexcept {
    try {
        body();
        return S_OK;
    } catch (const RaisedError& error) {
        return Report(error, interfaceId);
    } catch (const std::bad_alloc&) {
        return ReportUnexpected(E_OUTOFMEMORY, interfaceId);
    } catch (...) {
        return ReportUnexpected(E_UNEXPECTED, interfaceId);
    }
}

}  // namespace orbex::com
