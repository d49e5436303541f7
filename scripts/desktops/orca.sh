# The screen reader Orca, in Chinese and without a voice. What it speaks stands in the file QUILMORA_ORCA_LOG, in lines
# with "SPEECH OUTPUT:". Orca buffers its log unless it is a terminal.
export QUILMORA_ORCA_LOG=$folder/orca.txt
mkdir -p "$folder/orca/bin"
# Orca does not start beside another one that pgrep finds, not even beside one of another session.
ln -s "$(type -P false)" "$folder/orca/bin/pgrep"
start orca env -u XDG_CONFIG_HOME -u XDG_DATA_HOME -u XDG_CACHE_HOME HOME="$folder/orca" LANGUAGE=zh_CN \
    SPEECHD_ADDRESS=unix_socket:/none PATH="$folder/orca/bin:$PATH" \
    script -qefc 'orca --debug-file=/dev/tty' "$QUILMORA_ORCA_LOG"
wait_until grep -q 'SPEECH OUTPUT:' "$QUILMORA_ORCA_LOG"
