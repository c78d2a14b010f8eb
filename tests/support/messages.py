"""The numbers of the window messages and keys that tests post."""

WM_CLOSE = 0x10
WM_COMMAND = 0x111
WM_KEYDOWN = 0x100
WM_KEYUP = 0x101
WM_CHAR = 0x102
WM_MOUSEMOVE = 0x200
WM_LBUTTONDOWN = 0x201
WM_LBUTTONUP = 0x202

VK_ESCAPE = 0x1B
VK_F11 = 0x7A
