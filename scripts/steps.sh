# shellcheck shell=bash
# For scripts of several steps: names each as it begins, with the time since the start, and how long it took at the end.
#
#   step NAME        begins a step, and ends the one before
#   step_times       ends the last one, and prints how long each took
#
# A script that ends inside a step with a failure says which one that was.

step_names=()
step_seconds=()
step_begin=0

clock() {
  printf '%d:%02d' $(($1 / 60)) $(($1 % 60))
}

end_step() {
  local last=$((${#step_names[@]} - 1))
  if [ "$last" -ge 0 ] && [ ${#step_seconds[@]} -le "$last" ]; then
    step_seconds+=($((SECONDS - step_begin)))
  fi
}

step() {
  end_step
  step_names+=("$1")
  step_begin=$SECONDS
  printf '== %s  %s\n' "$(clock "$SECONDS")" "$1"
}

step_times() {
  end_step
  local i
  for i in "${!step_names[@]}"; do
    printf '   %6s  %s\n' "$(clock "${step_seconds[$i]}")" "${step_names[$i]}"
  done
}

# Shows how far a build by ninja is, a line for each fifth of it, and nothing else of its output.
build_progress() {
  local line last=0
  while IFS= read -r line; do
    [[ $line =~ ^\[([0-9]+)/([0-9]+)\] ]] || continue
    local fifth=$((5 * BASH_REMATCH[1] / BASH_REMATCH[2]))
    [ "$fifth" -gt "$last" ] || continue
    last=$fifth
    printf '   %s  %d of %d\n' "$(clock "$SECONDS")" "${BASH_REMATCH[1]}" "${BASH_REMATCH[2]}"
  done
}

failed_step() {
  local status=$?
  if [ "$status" -ne 0 ] && [ ${#step_names[@]} -gt 0 ]; then
    printf '== %s  failed: %s\n' "$(clock "$SECONDS")" "${step_names[-1]}" >&2
  fi
}
trap failed_step EXIT
