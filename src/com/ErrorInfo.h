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

// Sets the thread's error info for the failure and returns its HRESULT.
HRESULT Report(const RaisedError& error, REFIID interfaceId);

// Runs `body` and turns whatever it throws into an HRESULT with error info.
template <class Body>
HRESULT Guard(REFIID interfaceId, Body&& body) noexcept {
    try {
        body();
        return S_OK;
    } catch (const RaisedError& error) {
        return Report(error, interfaceId);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

}  // namespace orbex::com
