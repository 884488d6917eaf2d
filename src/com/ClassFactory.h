// The class factory handed out by DllGetClassObject: one per creatable class, stateless but
// for its reference count.
#pragma once
#include "Catalogue.h"

#include <unknwn.h>

namespace orbex::com {

HRESULT GetClassFactory(const ClassEntry& entry, REFIID riid, void** object);

}  // namespace orbex::com
