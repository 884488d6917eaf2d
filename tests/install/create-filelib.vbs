' Creates Orbex.FileLib by its ProgID and uses it; the marker is the proof that both worked.
Set files = CreateObject("Orbex.FileLib")
If files.ParseFilenameExt("C:\a\b.txt") = "txt" Then WScript.Echo "ORBEX-SCRIPT-PASSED"
