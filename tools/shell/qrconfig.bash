# bash completion for qrconfig: commands, options and their choices, configuration
# directories, and from the installation the command line names (--config-dir, else
# QR_CONFIG_DIR) node paths, field names, driver names and database names.
#
# Every name comes from qrconfig itself ('qrconfig names ...'); this script parses no
# configuration file. Installed as <datadir>/bash-completion/completions/qrconfig.

# Candidates of `list` that start with the word being completed, into COMPREPLY.
_qrconfig_names() {
  local cur=$1 name
  shift
  COMPREPLY=()
  while IFS= read -r name; do
    [[ $name == "$cur"* ]] && COMPREPLY+=("$name")
  done < <("$@" 2>/dev/null)
}

_qrconfig() {
  local qrconfig=${COMP_WORDS[0]} cur=${COMP_WORDS[COMP_CWORD]}
  local prev=
  ((COMP_CWORD > 0)) && prev=${COMP_WORDS[COMP_CWORD - 1]}
  local -A takes=()
  local line
  while read -r line; do
    takes[${line%% *}]=$([[ $line == *" "* ]] && echo "${line#* }")
  done < <("$qrconfig" names options 2>/dev/null)

  # The command, its arguments so far, and the options that choose the installation.
  local command= word i ended=
  local -a arguments=() passed=()
  for ((i = 1; i < COMP_CWORD; i++)); do
    word=${COMP_WORDS[i]}
    if [[ -z $ended && $word == -* ]]; then
      [[ $word == -- ]] && ended=1 && continue
      if [[ -n ${takes[$word]} ]] && ((i + 1 < COMP_CWORD)); then
        case $word in
          --config-dir | --mode | --platform | --param) passed+=("$word" "${COMP_WORDS[i + 1]/#\~/$HOME}") ;;
        esac
        ((i++))
      fi
      continue
    fi
    if [[ -z $command ]]; then command=$word; else arguments+=("$word"); fi
  done

  if [[ -z $ended && -n ${takes[$prev]} ]]; then
    if [[ $prev == --config-dir ]]; then
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -d -- "$cur")
    elif [[ ${takes[$prev]} == *"|"* ]]; then
      mapfile -t COMPREPLY < <(compgen -W "${takes[$prev]//|/ }" -- "$cur")
    fi
    return 0
  fi
  if [[ -z $ended && $cur == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "${!takes[*]}" -- "$cur")
    return 0
  fi
  if [[ -z $command ]]; then
    _qrconfig_names "$cur" "$qrconfig" names commands
    return 0
  fi

  local list=("$qrconfig" "${passed[@]}" names)
  case $command:${#arguments[@]} in
    tree:0 | get:0 | explain:0)
      # One level at a time, like directories.
      local parent=${cur%/*}
      [[ $cur == /*/* ]] || parent=
      compopt -o nospace 2>/dev/null
      _qrconfig_names "$cur" "${list[@]}" nodes ${parent:+"$parent"}
      local -a children=()
      for word in "${COMPREPLY[@]}"; do
        [[ ${word#"$parent"/} == */* ]] || children+=("$word")
      done
      COMPREPLY=("${children[@]}")
      ;;
    get:1 | explain:1) _qrconfig_names "$cur" "${list[@]}" fields "${arguments[0]}" ;;
    diff:0 | diff:1)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -d -- "$cur")
      return 0
      ;;
    databases:0 | resolve:0 | texts:0 | charset:0)
      _qrconfig_names "$cur" "${list[@]}" drivers
      ;;
    resolve:1 | charset:1) _qrconfig_names "$cur" "${list[@]}" databases "${arguments[0]}" ;;
    names:0) mapfile -t COMPREPLY < <(compgen -W "commands options nodes fields drivers databases" -- "$cur") ;;
    names:1)
      case ${arguments[0]} in
        fields) _qrconfig_names "$cur" "${list[@]}" nodes ;;
        databases) _qrconfig_names "$cur" "${list[@]}" drivers ;;
      esac
      ;;
    help:0) _qrconfig_names "$cur" "$qrconfig" names commands ;;
  esac
  # Names may hold blanks ("Relay Bridge"): let bash quote them.
  compopt -o filenames 2>/dev/null
  return 0
}

complete -F _qrconfig qrconfig
