# Orbex from PowerShell. The process must match a registered Orbex.dll: 64-bit PowerShell needs
# the 64-bit build registered, "Windows PowerShell (x86)" the 32-bit one.
# Run it with: powershell -ExecutionPolicy Bypass -File Orbex.ps1
Set-StrictMode -Version Latest
$ErrorActionPreference = 'Stop'
"PowerShell is a {0}-bit process" -f ([IntPtr]::Size * 8)

# A failed call arrives as an ErrorRecord; the COMException inside it carries Orbex's error.
function Get-OrbexError([System.Management.Automation.ErrorRecord] $record) {
    $e = $record.Exception
    while ($e -and $e -isnot [System.Runtime.InteropServices.COMException]) { $e = $e.InnerException }
    if (-not $e) { throw $record }
    $number = if ((($e.ErrorCode -shr 16) -band 0x1FFF) -eq 0x0A) { $e.ErrorCode -band 0xFFFF } else { $e.ErrorCode }
    [pscustomobject]@{ Number = $number; Source = $e.Source; Description = $e.Message }
}

$reg = New-Object -ComObject Orbex.RegLib
# A property with arguments, even optional ones only, is read with parentheses.
$settings = $reg.CurrentUser().CreateSubKey('Software\OrbexExamples\PowerShell')

$settings.SetValue('Greeting', 'Hello')                     # ValueType left out: vqString
$settings.SetValue('Count', 42, 4)                          # 4: vqDWORD
$settings.SetValue('Flags', [byte[]](1, 2, 255), 3)         # 3: vqBinary takes a byte[]
$settings.SetValue('Names', [string[]]('alpha', 'beta'), 7) # 7: vqMultiString takes a string[]

$dataType = 0
$count = $settings.GetValueEx('Count', [ref]$dataType)      # by-reference arguments take [ref]
"Count = $count (type $dataType)"
"Flags = " + (($settings.GetValue('Flags') | ForEach-Object { $_.ToString('X2') }) -join ' ')
"Names = " + ($settings.GetValue('Names') -join ', ')
"Missing = " + $settings.GetValue('Missing', '(default)')

# String() results arrive as .NET arrays. The registry's empty list has the bounds -1 to -1.
$names = $settings.GetValueNames()
"Values: " + ($names -join ', ')
$subKeys = $settings.GetSubKeyNames()
if ($subKeys.GetLowerBound(0) -lt 0) { 'No sub-keys' }

# Errors: registry numbers are negative, INILib's is 0, FileLib's are platform codes.
try {
    $reg.CurrentUser().DeleteSubKey('Software\OrbexExamples\NoSuchKey', $true)
} catch {
    $err = Get-OrbexError $_
    "Error $($err.Number) from $($err.Source): $($err.Description)"
}
$files = New-Object -ComObject Orbex.FileLib
try {
    $files.CurrentFolder = 'C:\No\Such\Folder'
} catch {
    $err = Get-OrbexError $_
    "Error $($err.Number) from $($err.Source): $($err.Description)"
}

# Objects handed out by other objects are COM objects like the first one.
$disk = $files.DiskInfo('C:\')
"C:\ is {0}, {1} free" -f $disk.FileSystem, $files.FormatSize($disk.TotalBytesFree)

# Release COM objects when done rather than waiting for the garbage collector; a key that is
# released is closed.
foreach ($o in $disk, $files, $settings) { [void][System.Runtime.InteropServices.Marshal]::ReleaseComObject($o) }
$reg.CurrentUser().DeleteSubKeyTree('Software\OrbexExamples\PowerShell')
if ($reg.CurrentUser().OpenSubKey('Software\OrbexExamples').SubKeyCount -eq 0) {
    $reg.CurrentUser().DeleteSubKey('Software\OrbexExamples')
}
[void][System.Runtime.InteropServices.Marshal]::ReleaseComObject($reg)
