# Completion of twk for bash. The program itself knows what fits.
_twk() {
  local word joined=0
  local -a given=()
  # The line editor breaks words at "=" and ":", the shell does not.
  for word in "${COMP_WORDS[@]:1:COMP_CWORD}"; do
    if [[ ${#given[@]} -gt 0 && ($joined == 1 || $word == [=:]*) ]]; then
      given[-1]+=$word
    else
      given+=("$word")
    fi
    [[ $word == [=:]* ]] && joined=1 || joined=0
  done
  local cur=${given[-1]} index
  for index in "${!given[@]}"; do
    word=${given[index]}
    case $word in
      \"* | \'*) word=${word:1} && given[index]=${word%[\"\']} ;;
      *) given[index]=${word//\\/} ;;
    esac
  done

  # What the line editor takes for a word of its own begins after the last break.
  local broken=""
  [[ $cur == [\"\']* ]] || broken=${cur%"${cur##*[=:]}"}

  COMPREPLY=()
  local line
  while IFS= read -r line; do
    case $line in
      FILES) compopt -o filenames 2>/dev/null && mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -f -- "$cur") ;;
      FOLDERS) compopt -o filenames 2>/dev/null && mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -d -- "$cur") ;;
      *)
        word=${line%%$'\t'*}
        word=${word#"$broken"}
        [[ $cur == [\"\']* ]] || printf -v word '%q' "$word"
        COMPREPLY+=("$word")
        ;;
    esac
  done < <("${COMP_WORDS[0]}" __complete "${given[@]}" 2>/dev/null)
}
complete -F _twk twk
