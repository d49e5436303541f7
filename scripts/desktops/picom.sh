# The X compositor picom, without shadows and fading of its own.
start picom picom --config /dev/null --backend xrender
wait_until sh -c 'xlsatoms -name _NET_WM_CM_S0 2>/dev/null | grep -q _NET_WM_CM_S0'
