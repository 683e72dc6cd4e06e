#pragma once

/// The boxes of the tabs "Delete Users" and "Move Users". A click stores those that are settings, below
/// `\DU`.
namespace twk::windows {

struct Desktop;

/// Sets the boxes of the "Delete Users" tab as stored.
void read_delete_options(Desktop& session);

void Del_Shares_Click(Desktop& session);
void Del_Permissions_Click(Desktop& session);
void Delete_NT_Account_Click(Desktop& session);
/// The folders are found only through the shares: ticking one also ticks the other, permanently.
void Delete_Data_Click(Desktop& session);
void Delete_Mail_Click(Desktop& session);
void Run_command_Click(Desktop& session);
/// Ticking them warns about the questions that are then skipped.
void No_Prompting_Click(Desktop& session);
void No_Prompt_Click(Desktop& session);

/// Which boxes can be ticked together with those that are.
void show_delete_options(Desktop& session);

}  // namespace twk::windows
