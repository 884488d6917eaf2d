// The door to the machine: hands out the four information objects, names the computer and the
// user, presses Print Screen, makes GUIDs, and asks the platform to end the session, shut down
// or sleep. It keeps nothing between calls.
#pragma once
#include "MemoryInfo.h"
#include "OSInfo.h"
#include "PowerInfo.h"
#include "ScreenInfo.h"
#include "frame/Types.h"

#include <memory>

namespace orbex {

enum vqExitFlag : Long {
    vqEFNone = 0,
    vqEFForce = 4,
    vqEFForceIfHung = 16,
};

enum vqSleepFlag : Long {
    vqSFNone = 0,
    vqSFForce = 1,
};

class SystemLib {
public:
    // A new object at every read.
    std::unique_ptr<orbex::OSInfo> OSInfo() const;
    std::unique_ptr<orbex::PowerInfo> PowerInfo() const;
    std::unique_ptr<orbex::MemoryInfo> MemoryInfo() const;
    std::unique_ptr<orbex::ScreenInfo> ScreenInfo() const;

    // False without asking the platform on Windows 95, NT 3 and NT 4.
    Boolean IsHibernateAllowed() const;
    Boolean IsShutdownAllowed() const;
    Boolean IsSuspendAllowed() const;
    Boolean IsSystemResumeAutomatic() const;

    String ComputerName() const;  // "" when the platform refuses
    String UserName() const;      // "" when the platform refuses

    // True when the platform accepted the request. Only exactly vqEFForce or vqEFForceIfHung
    // adds to the request; any other flag is ignored.
    Boolean LogOff(vqExitFlag exitFlag = vqEFNone) const;
    Boolean Shutdown(vqExitFlag exitFlag = vqEFNone) const;
    Boolean PowerOff(vqExitFlag exitFlag = vqEFNone) const;
    Boolean Reboot(vqExitFlag exitFlag = vqEFNone) const;
    Boolean Hibernate(vqSleepFlag sleepFlag = vqSFNone, Boolean disableWakeEvent = False) const;
    Boolean Suspend(vqSleepFlag sleepFlag = vqSFNone, Boolean disableWakeEvent = False) const;

    // Alt+Print Screen for the active window, Print Screen alone for the whole screen. Lets the
    // caller's pending window messages run twice on the way.
    void CaptureScreen(Boolean activeWindow = True) const;

    // A new GUID in its 38-character brace form.
    String GetGUID() const;
};

}  // namespace orbex
