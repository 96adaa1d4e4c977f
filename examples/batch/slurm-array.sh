#!/usr/bin/env bash
# Predicts a list of entries as a SLURM job array, one hundred entries a task.
#
#   find entries -type f | LC_ALL=C sort > entries.txt
#   sbatch --array=0-$((($(wc -l < entries.txt) - 1) / 100)) slurm-array.sh entries.txt
#
# When all tasks are done:
#
#   awk 'FNR > 1 || NR == 1' part-*.tsv > prolines.tsv
#SBATCH --job-name=citrans
#SBATCH --cpus-per-task=1
#SBATCH --mem=500M
#SBATCH --time=00:10:00
set -euo pipefail

list=$1
first=$((SLURM_ARRAY_TASK_ID * 100 + 1))
part=$(printf 'part-%06d.tsv' "$SLURM_ARRAY_TASK_ID")

# A task that is started again goes on where it was.
sed -n "${first},$((first + 99))p" "$list" | citrans-batch --quiet --resume --list - -o "$part"
