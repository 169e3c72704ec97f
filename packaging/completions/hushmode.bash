# Completion of hushmode for bash. Made by packaging/generate from the program's own commands; do not edit.
# shellcheck shell=bash

# Sets what a command offers.
_hushmode_offers() { # COMMAND
  commands='' options=''
  case $1 in
    hushmode) commands='profile export import on off status log calendars networks quiet schedule rescue agenda explain doctor simulate events help' options='--version -h --help' ;;
    'hushmode profile') commands='list show add edit remove enable disable copy' options='-h --help' ;;
    'hushmode profile list') commands='' options='--json -h --help' ;;
    'hushmode profile show') commands='' options='--json -h --help' ;;
    'hushmode profile add') commands='' options='--all-day --window --calendars --networks --enabled --ringtone --media --vibrate --do-not-disturb --icon --play-tone --tone --light --events --all-day-events -h --help' ;;
    'hushmode profile edit') commands='' options='--all-day --window --calendars --networks --enabled --ringtone --media --vibrate --do-not-disturb --icon --play-tone --tone --light --events --all-day-events --title --editor -h --help' ;;
    'hushmode profile remove') commands='' options='-h --help' ;;
    'hushmode profile enable') commands='' options='-h --help' ;;
    'hushmode profile disable') commands='' options='-h --help' ;;
    'hushmode profile copy') commands='' options='-h --help' ;;
    'hushmode export') commands='' options='--format -h --help' ;;
    'hushmode import') commands='' options='--dry-run --replace --json -h --help' ;;
    'hushmode on') commands='' options='-h --help' ;;
    'hushmode off') commands='' options='-h --help' ;;
    'hushmode status') commands='' options='--json -h --help' ;;
    'hushmode log') commands='' options='--json --limit -h --help' ;;
    'hushmode calendars') commands='' options='--json -h --help' ;;
    'hushmode networks') commands='' options='--json -h --help' ;;
    'hushmode quiet') commands='' options='--profile --end -h --help' ;;
    'hushmode schedule') commands='' options='--days --list --remove --json -h --help' ;;
    'hushmode rescue') commands='' options='--dry-run --json -h --help' ;;
    'hushmode agenda') commands='' options='--days --from --json --picture --svg -h --help' ;;
    'hushmode explain') commands='' options='--at --verbose --json -h --help' ;;
    'hushmode doctor') commands='' options='--json -h --help' ;;
    'hushmode simulate') commands='' options='--profiles --calendars --from --to --zone -v --verbose --host --no-host --json -h --help' ;;
    'hushmode events') commands='' options='--calendars --from --to --zone --json -h --help' ;;
    'hushmode help') commands='' options='--json -h --help' ;;
  esac
}

# Sets how a value is completed: behind an option, or at a place ("1" for the first; "+" for any).
_hushmode_value() { # COMMAND OPTION-OR-PLACE
  action=''
  case "$1 $2" in
    'hushmode profile show 1') action='names profiles' ;;
    'hushmode profile add --window') action=any ;;
    'hushmode profile add --calendars') action='list calendars' ;;
    'hushmode profile add --networks') action='list networks none' ;;
    'hushmode profile add --enabled') action='words on off' ;;
    'hushmode profile add --ringtone') action=any ;;
    'hushmode profile add --media') action=any ;;
    'hushmode profile add --vibrate') action='words on off' ;;
    'hushmode profile add --do-not-disturb') action='words on off' ;;
    'hushmode profile add --icon') action='words on off' ;;
    'hushmode profile add --play-tone') action='words on off' ;;
    'hushmode profile add --tone') action='names tones' ;;
    'hushmode profile add --light') action='words on off' ;;
    'hushmode profile add --events') action='words any confirmed tentative' ;;
    'hushmode profile add --all-day-events') action='words count ignore' ;;
    'hushmode profile add 1') action=any ;;
    'hushmode profile edit --window') action=any ;;
    'hushmode profile edit --calendars') action='list calendars' ;;
    'hushmode profile edit --networks') action='list networks none' ;;
    'hushmode profile edit --enabled') action='words on off' ;;
    'hushmode profile edit --ringtone') action=any ;;
    'hushmode profile edit --media') action=any ;;
    'hushmode profile edit --vibrate') action='words on off' ;;
    'hushmode profile edit --do-not-disturb') action='words on off' ;;
    'hushmode profile edit --icon') action='words on off' ;;
    'hushmode profile edit --play-tone') action='words on off' ;;
    'hushmode profile edit --tone') action='names tones' ;;
    'hushmode profile edit --light') action='words on off' ;;
    'hushmode profile edit --events') action='words any confirmed tentative' ;;
    'hushmode profile edit --all-day-events') action='words count ignore' ;;
    'hushmode profile edit --title') action=any ;;
    'hushmode profile edit 1') action='names profiles' ;;
    'hushmode profile remove 1') action='names profiles' ;;
    'hushmode profile enable 1') action='names profiles' ;;
    'hushmode profile disable 1') action='names profiles' ;;
    'hushmode profile copy 1') action='names profiles' ;;
    'hushmode profile copy 2') action=any ;;
    'hushmode export --format') action='words xml binary' ;;
    'hushmode export 1') action=files ;;
    'hushmode export +') action='names profiles' ;;
    'hushmode import 1') action=files ;;
    'hushmode log --limit') action=any ;;
    'hushmode quiet --profile') action='names profiles' ;;
    'hushmode quiet 1') action=any ;;
    'hushmode schedule --days') action='wordlist mon tue wed thu fri sat sun' ;;
    'hushmode schedule 1') action='names profiles' ;;
    'hushmode schedule 2') action=any ;;
    'hushmode agenda --days') action=any ;;
    'hushmode agenda --from') action=any ;;
    'hushmode agenda --svg') action=files ;;
    'hushmode explain --at') action=any ;;
    'hushmode explain 1') action='names profiles' ;;
    'hushmode simulate --profiles') action=files ;;
    'hushmode simulate --calendars') action=folders ;;
    'hushmode simulate --from') action=any ;;
    'hushmode simulate --to') action=any ;;
    'hushmode simulate --zone') action='names zones' ;;
    'hushmode simulate 1') action=files ;;
    'hushmode events --calendars') action=folders ;;
    'hushmode events --from') action=any ;;
    'hushmode events --to') action=any ;;
    'hushmode events --zone') action='names zones' ;;
    'hushmode help +') action=any ;;
  esac
}

# Reads the line up to the cursor as the shell would: words, and the one being typed, without their quotation marks.
# `head` is what of that word lies before the text that readline replaces, and `quote` the mark that is open.
_hushmode_read() {
  local line=${COMP_LINE:0:COMP_POINT} i char escaped='' begun=''
  words=() word='' head='' quote=''
  for ((i = 0; i < ${#line}; i++)); do
    char=${line:i:1}
    if [[ $escaped ]]; then
      [[ $quote && $char != [\$\`\"\\] ]] && word+=\\
      word+=$char escaped=''
    elif [[ $quote ]]; then
      if [[ $char == "$quote" ]]; then
        quote='' head=$word
      elif [[ $quote == '"' && $char == \\ ]]; then
        escaped=1
      else
        word+=$char
      fi
    elif [[ $char == [[:blank:]] ]]; then
      [[ $begun ]] && words+=("$word")
      word='' head='' begun=''
    else
      begun=1
      case $char in
        \\) escaped=1 ;;
        [\"\']) quote=$char head=$word ;;
        *)
          word+=$char
          [[ $COMP_WORDBREAKS == *"$char"* ]] && head=$word
          ;;
      esac
    fi
  done
}

# A text as it must stand behind `quote`, without the closing mark.
_hushmode_quoted() { # TEXT
  local text=$1
  case $quote in
    "'") printf '%s' "${text//\'/\'\\\'\'}" ;;
    '"')
      text=${text//\\/\\\\} text=${text//\"/\\\"} text=${text//\$/\\\$} text=${text//\`/\\\`}
      # A "!" calls the shell's history, unless it is the last.
      text=${text//!/\"\'!\'\"}
      [[ $text == *\"\'!\'\" ]] && text=${text%?????}!
      printf '%s' "$text"
      ;;
    *) printf '%q' "$text" ;;
  esac
}

# Offers those of the texts that continue `word`.
_hushmode_reply() { # TEXT...
  local text
  for text; do
    [[ $text == "$word"* ]] && COMPREPLY+=("$(_hushmode_quoted "${text#"$head"}")")
  done
}

# Offers the texts behind what the word begins with; of a list, those that are not yet in it, behind its last comma.
_hushmode_offer() { # BEGINNING IS-LIST TEXT...
  local begin=$1 list=$2 given=, text
  shift 2
  local -a offered=()
  if [[ $list && $word == "$begin"*,* ]]; then
    given=${word#"$begin"}
    given=,${given%,*},
    given=${given//, /,}
    begin=${word%,*},
    while [[ $word == "$begin "* ]]; do begin+=' '; done
  fi
  for text; do
    [[ $given == *",$text,"* ]] || offered+=("$begin$text")
  done
  _hushmode_reply "${offered[@]}"
}

# Offers values by the action of _hushmode_value.
_hushmode_complete() { # BEGINNING
  local -a names words_of
  read -ra words_of <<<"$action"
  case ${words_of[0]} in
    names | list)
      mapfile -t names < <(hushmode complete "${words_of[1]}" 2>/dev/null)
      [[ ${words_of[0]} == list ]] && local list=1
      _hushmode_offer "$1" "${list-}" "${names[@]}" "${words_of[@]:2}"
      ;;
    words) _hushmode_offer "$1" '' "${words_of[@]:1}" ;;
    wordlist) _hushmode_offer "$1" 1 "${words_of[@]:1}" ;;
    files | folders)
      compopt -o filenames 2>/dev/null
      local kind=-f
      [[ ${words_of[0]} == folders ]] && kind=-d
      mapfile -t COMPREPLY < <(compgen "$kind" -- "${word#"$1"}")
      ;;
  esac
}

_hushmode() {
  local -a words
  local word head quote commands options action each path=hushmode place=1 option='' only_places=''
  COMPREPLY=()
  _hushmode_read
  for each in "${words[@]:1}"; do
    _hushmode_offers "$path"
    if [[ $option ]]; then
      option=''
    elif [[ ! $only_places && $each == -- ]]; then
      only_places=1
    elif [[ ! $only_places && $each == -?* ]]; then
      _hushmode_value "$path" "$each"
      [[ $action ]] && option=$each
    elif [[ " $commands " == *" $each "* ]]; then
      path+=" $each"
    else
      ((place++))
    fi
  done
  _hushmode_offers "$path"
  if [[ $option ]]; then
    _hushmode_value "$path" "$option"
    _hushmode_complete ''
  elif [[ ! $only_places && $word == --*=* ]]; then
    _hushmode_value "$path" "${word%%=*}"
    _hushmode_complete "${word%%=*}="
  elif [[ ! $only_places && $word == -* ]]; then
    # shellcheck disable=SC2086  # a list of words
    _hushmode_reply $options
  elif [[ $commands ]]; then
    # shellcheck disable=SC2086
    _hushmode_reply $commands
  else
    _hushmode_value "$path" "$place"
    [[ $action ]] || _hushmode_value "$path" +
    _hushmode_complete ''
  fi
}

complete -F _hushmode hushmode
